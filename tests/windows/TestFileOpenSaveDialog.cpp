
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>

#include <Vk_DocQuery/Failure.h>

#include "support/ModalDriver.h"
#include "support/RaisedBy.h"
#include "support/TestMain.h"
#include "windows/FileOpenSaveDialog.h"
#include "windows/mFileOpenSaveDialog.h"

using namespace Vk_DocQuery;
using VkTests::ModalDriver;
using VkTests::RaisedBy;

namespace {

/// Notes what it is asked and answers with given bytes.
class FakePlatform : public FilePlatform {
public:
    bool GetOpenFileName(OpenFileName &aRecord) override { return Answered("open", aRecord); }
    bool GetSaveFileName(OpenFileName &aRecord) override { return Answered("save", aRecord); }
    qint32 CommDlgExtendedError() override { return Error; }

    QByteArray Answer;  ///< goes into the buffer; none is cancel
    qint32 Error = 0;
    qint32 NewFilterIndex = 1;
    const char *NewFolder = nullptr;

    QByteArray Call;
    QByteArray Filter;
    QByteArray File;
    QByteArray Folder;
    QByteArray Title;
    QByteArray Extension;
    OpenFileName Record;

private:
    bool Answered(const char *aCall, OpenFileName &aRecord) {
        Call = aCall;
        Record = aRecord;
        const char *end = aRecord.lpstrFilter;
        while (end[0] != '\0' || end[1] != '\0') ++end;
        Filter = QByteArray(aRecord.lpstrFilter, end + 2 - aRecord.lpstrFilter);
        File = QByteArray(aRecord.lpstrFile, aRecord.nMaxFile);
        Folder = aRecord.lpstrInitialDir;
        Title = aRecord.lpstrTitle;
        Extension = aRecord.lpstrDefExt;
        if (Answer.isNull()) return false;
        std::copy(Answer.cbegin(), Answer.cend(), aRecord.lpstrFile);
        aRecord.nFilterIndex = NewFilterIndex;
        if (NewFolder) qstrcpy(aRecord.lpstrInitialDir, NewFolder);
        return true;
    }
};

QByteArray Bytes(const char *aBytes, int aSize) {
    return QByteArray(aBytes, aSize);
}

void MakeFile(const QString &aName, const QByteArray &aBytes = "x") {
    QFile file(aName);
    if (!file.open(QIODevice::WriteOnly) || file.write(aBytes) != aBytes.size()) qFatal("file");
}

const QString theTitle = QStringLiteral("Сохранить файл критериев поиска");
const QString theFilter = QStringLiteral("Файлы критериев поиска Норвика (*.qvk)|*.qvk");

}  // namespace

class TestFileOpenSaveDialog : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }
    void init() {
        theFolder = std::make_unique<QTemporaryDir>();
        QVERIFY(theFolder->isValid());
    }

    // Bytes

    void ZByteArray() {
        QByteArray bytes;
        const char *first = FileOpenSaveDialog::SaveStringToZByteArray(QStringLiteral("aЖ"), bytes);
        QVERIFY(first == bytes.constData());
        QCOMPARE(bytes, Bytes("a\xD0\x96\0", 4));
        FileOpenSaveDialog::SaveStringToZByteArray(QString(), bytes);
        QCOMPARE(bytes, Bytes("\0", 1));
    }

    void ZByteBuffer_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QByteArray>("buffer");
        QTest::newRow("shorter") << QStringLiteral("ab") << Bytes("ab\0\0\0", 5);
        QTest::newRow("just fits") << QStringLiteral("abcd") << Bytes("abcd\0", 5);
        QTest::newRow("cut") << QStringLiteral("abcdefg") << Bytes("abcd\0", 5);
        QTest::newRow("empty") << QString() << Bytes("\0\0\0\0\0", 5);
    }
    void ZByteBuffer() {
        QFETCH(QString, text);
        QFETCH(QByteArray, buffer);
        QByteArray bytes;
        const char *first = FileOpenSaveDialog::SaveStringToZByteBuffer(text, bytes, 5);
        QVERIFY(first == bytes.constData());
        QCOMPARE(bytes, buffer);
    }

    void LoadFromBuffer_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("text") << Bytes("ab\0cd\0", 6) << QStringLiteral("ab");
        QTest::newRow("without an end") << Bytes("abcd", 4) << QStringLiteral("abc");
        QTest::newRow("nothing") << Bytes("\0ab", 3) << QString();
        QTest::newRow("no bytes") << QByteArray() << QString();
        QTest::newRow("Russian") << Bytes("\xD0\x96\0", 3) << QStringLiteral("Ж");
    }
    void LoadFromBuffer() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, text);
        QCOMPARE(FileOpenSaveDialog::LoadStringFromZByteBuffer(bytes), text);
        if (!bytes.isEmpty()) QCOMPARE(bytes.back(), '\0');
    }

    void CountOfStrings_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("end");
        QTest::newRow("one") << Bytes("ab\0\0xx", 6) << 1 << 3;
        QTest::newRow("three") << Bytes("a\0b\0c\0\0x", 8) << 3 << 6;
        QTest::newRow("no double zero") << Bytes("a\0b\0c", 5) << 3 << 5;
        QTest::newRow("one zero at the end") << Bytes("ab\0", 3) << 1 << 3;
        QTest::newRow("no zero") << Bytes("ab", 2) << 1 << 2;
        QTest::newRow("zeros alone") << Bytes("\0\0", 2) << 1 << 1;
    }
    void CountOfStrings() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, count);
        QFETCH(int, end);
        qint32 counted = -1;
        qint32 ended = -1;
        FileOpenSaveDialog::CountZZStrings(bytes, qint32(bytes.size()), counted, ended);
        QCOMPARE(counted, count);
        QCOMPARE(ended, end);
    }

    void OneStringOfMany_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<int>("from");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("to");
        QTest::newRow("first") << Bytes("ab\0c\0\0", 6) << 0 << QStringLiteral("ab") << 3;
        QTest::newRow("second") << Bytes("ab\0c\0\0", 6) << 3 << QStringLiteral("c") << 5;
        QTest::newRow("empty") << Bytes("ab\0c\0\0", 6) << 5 << QString() << 6;
        QTest::newRow("rest") << Bytes("ab\0cd", 5) << 3 << QStringLiteral("cd") << 6;
        QTest::newRow("behind the end") << Bytes("ab\0", 3) << 3 << QString() << 3;
    }
    void OneStringOfMany() {
        QFETCH(QByteArray, bytes);
        QFETCH(int, from);
        QFETCH(QString, text);
        QFETCH(int, to);
        qint32 position = from;
        QCOMPARE(
            FileOpenSaveDialog::ExpandOneStringFromZZStrings(bytes, qint32(bytes.size()), position),
            text);
        QCOMPARE(position, to);
    }

    void AllStrings() {
        QStringList strings{QStringLiteral("before")};
        qint32 count = 0;
        FileOpenSaveDialog::ExpandZZBuffer(Bytes("a\0\xD0\x96\0c\0\0x", 9), 9, strings, count);
        QCOMPARE(count, 3);
        QCOMPARE(strings,
                 QStringList({QStringLiteral("a"), QStringLiteral("Ж"), QStringLiteral("c")}));
    }

    // The record that the platform gets

    void RecordHoldsTheFields() {
        FakePlatform platform;
        FileOpenSaveDialog dialog(platform);
        dialog.OwnerHwnd = 77;
        dialog.DialogTitle = QStringLiteral("Титул");
        dialog.Filter = QStringLiteral("A|*.a|B|*.b");
        dialog.FilterIndex = 2;
        dialog.FileName = QStringLiteral("имя");
        dialog.InitialDir = QStringLiteral("C:\\D");
        dialog.Flags = 0x880802;
        dialog.DefaultExt = QStringLiteral("qvk");
        QVERIFY(!dialog.RunSaveFileDialog());
        QCOMPARE(platform.Call, QByteArray("save"));
        QCOMPARE(platform.Record.lStructSize, 88);
        QCOMPARE(platform.Record.hwndOwner, WId(77));
        QCOMPARE(platform.Filter, Bytes("A\0*.a\0B\0*.b\0\0", 13));
        QCOMPARE(platform.Record.nFilterIndex, 2);
        QCOMPARE(platform.Record.nMaxFile, 32760);
        QCOMPARE(QString::fromUtf8(platform.File.constData()), QStringLiteral("имя"));
        QCOMPARE(platform.Folder, QByteArray("C:\\D"));
        QCOMPARE(QString::fromUtf8(platform.Title), QStringLiteral("Титул"));
        QCOMPARE(platform.Record.Flags, 0x880802);
        QCOMPARE(platform.Extension, QByteArray("qvk"));
        QVERIFY(!dialog.RunOpenFileDialog());
        QCOMPARE(platform.Call, QByteArray("open"));
    }

    void FilterWithAndWithoutFinalBarIsTheSame() {
        QByteArray lists[2];
        int i = 0;
        for (const char16_t *filter : {u"A|*.a", u"A|*.a|"}) {
            FakePlatform platform;
            FileOpenSaveDialog dialog(platform);
            dialog.Filter = QString::fromUtf16(filter);
            dialog.RunOpenFileDialog();
            lists[i++] = platform.Filter;
        }
        QCOMPARE(lists[0], Bytes("A\0*.a\0\0", 7));
        QCOMPARE(lists[1], lists[0]);
    }

    void LongFileNameIsCut() {
        FakePlatform platform;
        FileOpenSaveDialog dialog(platform);
        dialog.FileName = QString(40000, u'x');
        dialog.RunOpenFileDialog();
        QCOMPARE(platform.File, QByteArray(32759, 'x') + '\0');
    }

    // Results

    void CancelChangesNothing() {
        FakePlatform platform;
        platform.Answer = Bytes("C:\\first\0\0", 10);
        FileOpenSaveDialog dialog(platform);
        QVERIFY(dialog.RunOpenFileDialog());
        platform.Answer = QByteArray();
        platform.Error = 0x3003;
        QVERIFY(!dialog.RunOpenFileDialog());
        QCOMPARE(dialog.ExtendedError, 0x3003);
        QCOMPARE(dialog.FileName, QStringLiteral("C:\\first"));
        QCOMPARE(dialog.FilesCount(), 1);
        platform.Error = 0;
        QVERIFY(!dialog.RunOpenFileDialog());
        QCOMPARE(dialog.ExtendedError, 0);
        QCOMPARE(dialog.Files(0), QStringLiteral("C:\\first"));
    }

    void OneFile() {
        FakePlatform platform;
        platform.Answer = QStringLiteral("C:\\Папка\\Ж.qvk").toUtf8() + '\0';
        platform.NewFilterIndex = 3;
        FileOpenSaveDialog dialog(platform);
        dialog.FileName =
            QStringLiteral("a much longer name than that of the answer, to be overwritten");
        dialog.InitialDir = QStringLiteral("C:\\Начало");
        QVERIFY(dialog.RunSaveFileDialog());
        QCOMPARE(dialog.FileName, QStringLiteral("C:\\Папка\\Ж.qvk"));
        QCOMPARE(dialog.FilesCount(), 1);
        QCOMPARE(dialog.Files(0), dialog.FileName);
        QCOMPARE(dialog.FilterIndex, 3);
        QCOMPARE(dialog.InitialDir, QStringLiteral("C:\\Начало"));
        platform.NewFolder = "C:\\N";
        QVERIFY(dialog.RunSaveFileDialog());
        QCOMPARE(dialog.InitialDir, QStringLiteral("C:\\N"));
    }

    void SeveralFiles_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("fileName");
        const auto list = [](std::initializer_list<const char16_t *> aTexts) {
            QStringList texts;
            for (const char16_t *text : aTexts) texts << QString::fromUtf16(text);
            return texts;
        };
        QTest::newRow("three") << Bytes("C:\\D\0a\0b\0c\0\0", 12)
                               << list({u"C:\\D\\a", u"C:\\D\\b", u"C:\\D\\c"})
                               << QStringLiteral("a");
        QTest::newRow("root") << Bytes("C:\\\0a\0b\0\0", 9) << list({u"C:\\a", u"C:\\b"})
                              << QStringLiteral("a");
        QTest::newRow("slash at the end")
            << Bytes("/d/\0a\0b\0\0", 9) << list({u"/d/a", u"/d/b"}) << QStringLiteral("a");
        QTest::newRow("one") << Bytes("C:\\D\\a\0\0", 8) << list({u"C:\\D\\a"})
                             << QStringLiteral("C:\\D\\a");
        QTest::newRow("none") << Bytes("\0\0", 2) << list({u""}) << QString();
    }
    void SeveralFiles() {
        QFETCH(QByteArray, answer);
        QFETCH(QStringList, files);
        QFETCH(QString, fileName);
        FakePlatform platform;
        platform.Answer = answer;
        FileOpenSaveDialog dialog(platform);
        dialog.Flags = 0x200;
        QVERIFY(dialog.RunOpenFileDialog());
        QCOMPARE(dialog.FilesCount(), qint32(files.size()));
        for (qint32 i = 0; i < dialog.FilesCount(); ++i) QCOMPARE(dialog.Files(i), files[i]);
        QCOMPARE(dialog.FileName, fileName);
    }

    void BadIndexIsRaised_data() {
        QTest::addColumn<bool>("run");
        QTest::addColumn<int>("index");
        QTest::newRow("before any dialog") << false << 0;
        QTest::newRow("negative") << true << -1;
        QTest::newRow("behind the last") << true << 1;
    }
    void BadIndexIsRaised() {
        QFETCH(bool, run);
        QFETCH(int, index);
        FakePlatform platform;
        platform.Answer = Bytes("a\0\0", 3);
        FileOpenSaveDialog dialog(platform);
        if (run) QVERIFY(dialog.RunOpenFileDialog());
        const Failure failure = RaisedBy([&] { dialog.Files(index); });
        QCOMPARE(failure.Number(), 9);
        QCOMPARE(failure.Description(), QStringLiteral("[Vk_DocQuery::FileOpenSaveDialog.Files]\r\n"
                                                       "Индекс вне допустимого диапазона: %1.")
                                            .arg(index));
    }

    void AskForSaving() {
        FakePlatform platform;
        QCOMPARE(AskFileNameForSaving(theTitle, theFilter, QStringLiteral("Query.qvk"), 5, 0x880802,
                                      QStringLiteral("e"), platform),
                 QString());
        QCOMPARE(platform.Call, QByteArray("save"));
        QCOMPARE(platform.Record.nFilterIndex, 1);
        QCOMPARE(platform.Record.hwndOwner, WId(5));
        QCOMPARE(platform.Record.Flags, 0x880802);
        QCOMPARE(QByteArray(platform.File.constData()), QByteArray("Query.qvk"));
        QCOMPARE(platform.Extension, QByteArray("e"));
        QCOMPARE(platform.Folder, QByteArray());
        QCOMPARE(QString::fromUtf8(platform.Title), theTitle);
        platform.Answer = Bytes("/x/y.qvk\0\0", 10);
        QCOMPARE(AskFileNameForSaving(theTitle, theFilter, QString(), 0, 0, QString(), platform),
                 QStringLiteral("/x/y.qvk"));
        QCOMPARE(QByteArray(platform.File.constData()), QByteArray());
    }

    void AskForOpening() {
        FakePlatform platform;
        QCOMPARE(AskFileNameForOpening(theTitle, theFilter, QStringLiteral("a"), 5, 0x281800,
                                       QStringLiteral("/start"), platform),
                 QString());
        QCOMPARE(platform.Call, QByteArray("open"));
        QCOMPARE(platform.Record.nFilterIndex, 0);
        QCOMPARE(platform.Record.Flags, 0x281800);
        QCOMPARE(platform.Folder, QByteArray("/start"));
        QCOMPARE(QByteArray(platform.File.constData()), QByteArray("a"));
        QCOMPARE(platform.Extension, QByteArray());
        platform.Answer = Bytes("/x/y.qvk\0\0", 10);
        QCOMPARE(AskFileNameForOpening(theTitle, theFilter, QString(), 0, 0, QString(), platform),
                 QStringLiteral("/x/y.qvk"));
    }

    // Real dialogs

    void DialogForOpening() {
        const QString file = Path(u"Мои критерии.qvk");
        MakeFile(file);
        QWidget owner;
        owner.show();
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            auto *dialog = qobject_cast<QFileDialog *>(&window);
            if (!dialog) return window.close(), void();
            Same(driver, dialog->windowTitle(), QStringLiteral("Открыть файл критериев поиска"));
            Same(driver, dialog->nameFilters().join(u'/'),
                 QStringLiteral("Файлы критериев поиска Норвика (*.qvk)"));
            Same(driver, dialog->directory().path(), theFolder->path());
            Same(driver, dialog->labelText(QFileDialog::Accept), QStringLiteral("&Открыть"));
            Same(driver, dialog->labelText(QFileDialog::Reject), QStringLiteral("Отмена"));
            Same(driver, dialog->labelText(QFileDialog::FileName), QStringLiteral("&Имя файла:"));
            Same(driver, dialog->labelText(QFileDialog::FileType), QStringLiteral("Тип файлов:"));
            Same(driver, dialog->labelText(QFileDialog::LookIn), QStringLiteral("Папка:"));
            Same(driver, dialog->iconProvider()->type(QFileInfo(theFolder->path())),
                 QStringLiteral("Папка"));
            if (dialog->windowHandle()->transientParent() != owner.windowHandle())
                driver.Complain(QStringLiteral("owner"));
            Type(*dialog, QStringLiteral("Мои критерии.qvk"));
        });
        QCOMPARE(
            AskFileNameForOpening(QStringLiteral("Открыть файл критериев поиска"), theFilter,
                                  QString(), owner.winId(), theOpeningFlags, theFolder->path()),
            file);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void MissingFileIsToldAndAskedForAgain() {
        const QString file = Path(u"a.qvk");
        MakeFile(file);
        ModalDriver driver;
        driver.ExpectFileDialog(theTitle, QString(), Path(u"b.qvk"));
        driver.ExpectBox(
            QMessageBox::Warning, theTitle,
            QStringLiteral("Файл \"%1\" не найден.\r\nПроверьте правильность имени файла.")
                .arg(Path(u"b.qvk")),
            QStringLiteral("OK"));
        driver.Expect([&](QWidget &window) { Type(window, QStringLiteral("a.qvk")); });
        QCOMPARE(AskFileNameForOpening(theTitle, theFilter, QString(), 0, theOpeningFlags,
                                       theFolder->path()),
                 file);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void CancelGivesNothing() {
        ModalDriver driver;
        driver.ExpectFileDialog(theTitle, QStringLiteral("Query.qvk"), QString());
        QCOMPARE(AskFileNameForSaving(theTitle, theFilter, QStringLiteral("Query.qvk"), 0,
                                      theSavingFlags, QString()),
                 QString());
        driver.ExpectFileDialog(theTitle, QString(), QString());
        QCOMPARE(
            AskFileNameForOpening(theTitle, theFilter, QString(), 0, theOpeningFlags, QString()),
            QString());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void SavingOffersTheGivenFile() {
        const QString file = Path(u"old.qvk");
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            auto *dialog = qobject_cast<QFileDialog *>(&window);
            if (!dialog) return window.close(), void();
            Same(driver, dialog->directory().path(), theFolder->path());
            Same(driver, dialog->labelText(QFileDialog::Accept), QStringLiteral("&Сохранить"));
            auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
            Same(driver, name->text(), QStringLiteral("old.qvk"));
            QTest::keyClick(name, Qt::Key_Return);
        });
        QCOMPARE(AskFileNameForSaving(theTitle, theFilter, file, 0, theSavingFlags, QString()),
                 file);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void ExtensionOfTypedNames_data() {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("extension");
        QTest::addColumn<QString>("file");
        const auto row = [](const char16_t *aTyped, const char16_t *aExtension,
                            const char16_t *aFile) {
            QTest::newRow(
                qPrintable(QString::fromUtf16(aTyped) + u' ' + QString::fromUtf16(aExtension)))
                << QString::fromUtf16(aTyped) << QString::fromUtf16(aExtension)
                << QString::fromUtf16(aFile);
        };
        row(u"мой запрос", u"", u"мой запрос.qvk");
        row(u"Запрос за 2.2024", u"", u"Запрос за 2.2024.qvk");
        row(u"a.qvk", u"", u"a.qvk");
        row(u"a.txt", u"", u"a.txt");
        row(u"a.", u"", u"a.qvk");
        row(u"a", u"xml", u"a.xml");
        row(u"ООО Ромашка и Ко. Акт", u"", u"ООО Ромашка и Ко. Акт.qvk");
    }
    void ExtensionOfTypedNames() {
        QFETCH(QString, typed);
        QFETCH(QString, extension);
        QFETCH(QString, file);
        ModalDriver driver;
        driver.ExpectFileDialog(theTitle, QStringLiteral("q.qvk"), theFolder->filePath(typed));
        QCOMPARE(
            AskFileNameForSaving(theTitle, theFilter, theFolder->filePath(QStringLiteral("q.qvk")),
                                 0, theSavingFlags, extension),
            theFolder->filePath(file));
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void OverwritingIsAskedAbout() {
        const QString file = Path(u"a.qvk");
        MakeFile(file);
        const QString question =
            QStringLiteral("Файл \"%1\" уже существует.\r\nЗаменить его?").arg(file);
        ModalDriver driver;
        driver.ExpectFileDialog(theTitle, QStringLiteral("a.qvk"), file);
        driver.ExpectBox(QMessageBox::Question, theTitle, question, QStringLiteral("Да"),
                         QStringLiteral("Нет"));
        QCOMPARE(AskFileNameForSaving(theTitle, theFilter, file, 0, theSavingFlags, QString()),
                 file);

        // No leads back to the dialog; a name without its extension is the same file.
        driver.ExpectFileDialog(theTitle, QStringLiteral("a.qvk"), Path(u"a"));
        driver.ExpectBox(QMessageBox::Question, theTitle, question, QStringLiteral("Нет"));
        driver.Expect([&](QWidget &window) { Type(window, Path(u"b.qvk")); });
        QCOMPARE(AskFileNameForSaving(theTitle, theFilter, file, 0, theSavingFlags, QString()),
                 Path(u"b.qvk"));

        driver.ExpectFileDialog(theTitle, QStringLiteral("a.qvk"), file);
        QCOMPARE(AskFileNameForSaving(theTitle, theFilter, file, 0, PathMustExist, QString()),
                 file);
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void MissingFolderIsTold() {
        const QString folder = Path(u"нет");
        ModalDriver driver;
        driver.ExpectFileDialog(theTitle, QStringLiteral("q.qvk"),
                                folder + QStringLiteral("/q.qvk"));
        driver.ExpectBox(
            QMessageBox::Warning, theTitle,
            QStringLiteral("Папка \"%1\" не найдена.\r\nПроверьте правильность пути.").arg(folder),
            QStringLiteral("OK"));
        driver.Expect([&](QWidget &window) { QTest::keyClick(&window, Qt::Key_Escape); });
        QCOMPARE(
            AskFileNameForSaving(theTitle, theFilter, Path(u"q.qvk"), 0, theSavingFlags, QString()),
            QString());
        QVERIFY2(driver.Done(), driver.Complaint());
    }

    void FilterIndexIsReadAndWritten() {
        FileOpenSaveDialog dialog;
        dialog.Filter = QStringLiteral("Первый|*.a|Второй|*.b;*.c|Третий (*.d)|*.d|");
        dialog.FilterIndex = 2;
        dialog.FileName = Path(u"x.b");
        ModalDriver driver;
        driver.Expect([&](QWidget &window) {
            auto *real = qobject_cast<QFileDialog *>(&window);
            if (!real) return window.close(), void();
            Same(driver, real->nameFilters().join(u'/'),
                 QStringLiteral("Первый (*.a)/Второй (*.b *.c)/Третий (*.d)"));
            Same(driver, real->selectedNameFilter(), QStringLiteral("Второй (*.b *.c)"));
            auto *types = real->findChild<QComboBox *>(QStringLiteral("fileTypeCombo"));
            QTest::keyClick(types, Qt::Key_Down);
            Type(*real, Path(u"новый"));
        });
        QVERIFY(dialog.RunSaveFileDialog());
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(dialog.FilterIndex, 3);
        QCOMPARE(dialog.FileName, Path(u"новый.d"));
    }

    void SeveralRealFiles() {
        MakeFile(Path(u"а.qvk"));
        MakeFile(Path(u"б.qvk"));
        FileOpenSaveDialog dialog;
        dialog.Flags = theOpeningFlags | AllowMultiSelect;
        dialog.InitialDir = theFolder->path();
        ModalDriver driver;
        driver.Expect(
            [&](QWidget &window) { Type(window, QStringLiteral("\"а.qvk\" \"б.qvk\"")); });
        QVERIFY(dialog.RunOpenFileDialog());
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(dialog.FilesCount(), 2);
        QCOMPARE(dialog.Files(0), Path(u"а.qvk"));
        QCOMPARE(dialog.Files(1), Path(u"б.qvk"));
        QCOMPARE(dialog.FileName, QStringLiteral("а.qvk"));
    }

    void PathThatDoesNotFitIsAFailureOfTheDialog() {
        QByteArray file(16, '\0');
        OpenFileName record;
        record.lpstrFile = file.data();
        record.nMaxFile = qint32(file.size());
        record.lpstrFilter = "";
        record.lpstrTitle = "T";
        ModalDriver driver;
        driver.ExpectFileDialog(QStringLiteral("T"), QString(),
                                Path(u"a-name-of-more-than-16-bytes"));
        QVERIFY(!QtFileDialogs().GetSaveFileName(record));
        QVERIFY2(driver.Done(), driver.Complaint());
        QCOMPARE(QtFileDialogs().CommDlgExtendedError(), 0x3003);
    }

private:
    QString Path(const char16_t *aName) const {
        return theFolder->filePath(QString::fromUtf16(aName));
    }

    static void Same(ModalDriver &aDriver, const QString &aActual, const QString &aExpected) {
        if (aActual != aExpected)
            aDriver.Complain(QStringLiteral("\"%1\" is not \"%2\"").arg(aActual, aExpected));
    }

    static void Type(QWidget &aDialog, const QString &aText) {
        auto *name = aDialog.findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
        if (!name) return aDialog.close(), void();
        name->selectAll();
        name->insert(aText);
        QTest::keyClick(name, Qt::Key_Return);
    }

    std::unique_ptr<QTemporaryDir> theFolder;
};

VK_TEST_CLASS(TestFileOpenSaveDialog);

#include "TestFileOpenSaveDialog.moc"
