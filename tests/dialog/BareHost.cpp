// A host that has no QApplication of its own, in conditions that one process cannot go through in
// turn. It sees the library as any host does: public headers and the shared library.
//
//   bare_host none          the library makes the application; the dialog runs and is cancelled
//   bare_host core          the host has an application object without windows: a failure
//   bare_host nodisplay     there is no display: a failure, and the process lives on
//   bare_host deaddisplay   nobody answers where DISPLAY says: the same
//   bare_host deaddisplays  nor where WAYLAND_DISPLAY says: the same
//   bare_host refused       the X server there refuses the key: the same
//   bare_host thread        calls from another thread than that of the windows: failures
//   bare_host static        an editor goes behind the end of main
//   bare_host exit          the process is ended from inside of the dialog, which goes behind main
//   bare_host outlived      an editor goes behind its application, and another application comes
//   bare_host norecords     no supplier has entered its classes: files and dialog are there all the
//   same
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <thread>

#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <Vk_DocQuery/DocQueryEditor.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/TemplateQuerier.h>

#include "support/MemoryRecords.h"

using namespace Vk_DocQuery;

namespace {

int Complain(const QString &aText) {
    std::fprintf(stderr, "%s\n", aText.toUtf8().constData());
    return 1;
}

/// A record needs no windows: it can be written where none can be shown.
bool SavesARecord() {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.qvk"));
    VkDocQueryData record;
    QString error;
    return record.WriteToFileSafe(path, error) && QFile::exists(path);
}

template <class Body>
int ExpectFailure(qint32 aNumber, const QString &aDescription, Body aBody) {
    try {
        aBody();
    } catch (const Failure &failure) {
        if (failure.Description() == aDescription && failure.Number() == aNumber) return 0;
        return Complain(failure.Description());
    }
    return Complain(QStringLiteral("nothing was raised"));
}

int ExpectNoEditor(const QString &aText) {
    return ExpectFailure(InvalidArgument,
                         QStringLiteral("[Vk_DocQuery::DocQueryTest.Class_Initialize]\r\n") + aText,
                         [] { const DocQueryEditor editor; });
}

int ExpectNoDisplay(const QString &aWhy) {
    return ExpectNoEditor(
        QStringLiteral("[QApplication]\r\nОкна показать нельзя: нет доступа к экрану (%1).")
            .arg(aWhy));
}

/// Calls the function with each modal window that is up, from inside its event loop.
template <class Answer>
class Answerer : public QTimer {
public:
    explicit Answerer(Answer aAnswer) {
        callOnTimeout(this, [aAnswer] {
            QWidget *window = QApplication::activeModalWidget();
            if (window && window->isVisible()) aAnswer(*window);
        });
        start(1);
    }
};

int RunAndCancel() {
    if (QCoreApplication::instance()) return Complain(QStringLiteral("there is an application"));
    const QLocale before;
    DocQueryEditor editor;
    if (!qobject_cast<QApplication *>(QCoreApplication::instance()))
        return Complain(QStringLiteral("no application was made"));
    if (QLocale() != before)
        return Complain(QStringLiteral("others would write dates as in ") + QLocale().name());

    const auto record = std::make_shared<VkDocQueryData>();
    record->Notes = QStringLiteral("прежнее");
    editor.SetRecord(record);
    bool seen = false;
    const Answerer answerer([&](QWidget &aWindow) {
        seen = aWindow.objectName() == QStringLiteral("DocQueryOptionsFrm") &&
               aWindow.locale().language() == QLocale::Russian;
        aWindow.findChild<QPushButton *>(QStringLiteral("theCancel"))->click();
    });
    if (editor.Execute()) return Complain(QStringLiteral("a cancelled search was confirmed"));
    if (!seen) return Complain(QStringLiteral("the dialog did not come up"));
    if (editor.Record() != record || record->Notes != QStringLiteral("прежнее"))
        return Complain(QStringLiteral("the record was changed"));
    return 0;
}

/// Without a supplier the dialog comes up and files are saved; what needs records says that they
/// are missing.
int MissTheRecords() {
    DocQueryEditor editor;
    QString march;
    QString shown;
    const Answerer answerer([&](QWidget &aWindow) {
        if (const auto *months = aWindow.findChild<QComboBox *>(QStringLiteral("thePerMonth1")))
            march = months->itemText(2);
        if (const auto *box = qobject_cast<QMessageBox *>(&aWindow)) shown = box->text();
        aWindow.close();
    });
    if (editor.Execute() || !editor.Record())
        return Complain(QStringLiteral("the dialog did not end as cancelled"));
    if (march != QStringLiteral("Март")) return Complain(QStringLiteral("month: ") + march);

    TemplateQuerier().Execute();
    if (shown != QStringLiteral("[Vk_DocQuery::TemplateQuerierForm.Execute]\r\n"
                                "[Vk_DocQuery::TemplateQuerierForm.LoadAllObjects]\r\n"
                                "[Vk_DocQuery::mVkDBProvider.GetBlankQueries]\r\n"
                                "[Vk_DocQuery::mErrorHandling.CreateObjectErr] "
                                "{Object: Vk_DBProvider.BlankQueries}\r\n"
                                "[ClassRegistry]\r\n"
                                "Класс \"Vk_DBProvider.BlankQueries\" не зарегистрирован."))
        return Complain(shown);
    return 0;
}

int ExpectFromThread(const char *aChain, const std::function<void()> &aCall) {
    return ExpectFailure(InvalidArgument,
                         QString::fromUtf8(aChain) +
                             QStringLiteral("[QThread]\r\nВызов из другого потока: с окнами "
                                            "можно работать только в том потоке, где создано "
                                            "приложение."),
                         aCall);
}

/// The window thread is the one that came first. Nothing is done, and records and their files have
/// no windows.
int CallFromAnotherThread() {
    auto editor = std::make_unique<DocQueryEditor>();
    const auto given = std::make_shared<VkDocQueryData>();
    editor->SetRecord(given);
    int result = 0;
    std::thread([&] {
        result += ExpectFromThread("[Vk_DocQuery::DocQueryTest.Class_Initialize]\r\n",
                                   [] { const DocQueryEditor other; });
        result += ExpectFromThread("[Vk_DocQuery::DocQueryTest.Set-Record]\r\n",
                                   [&] { editor->SetRecord(nullptr); });
        result += ExpectFromThread("[Vk_DocQuery::DocQueryTest.Get-Record]\r\n",
                                   [&] { editor->Record(); });
        result += ExpectFromThread("[Vk_DocQuery::DocQueryTest.RunOptionsDialog]\r\n",
                                   [&] { editor->Execute(); });
        result += ExpectFromThread("[Vk_DocQuery::DocQueryTest.AskAndLoadQuery]\r\n",
                                   [&] { editor->AskAndLoadQuery(0); });
        result += ExpectFromThread("[Vk_DocQuery::TemplateQuerier.Execute]\r\n",
                                   [] { TemplateQuerier().Execute(); });
        if (!SavesARecord()) result += Complain(QStringLiteral("the record was not saved"));
    }).join();
    if (editor->Record() != given) result += Complain(QStringLiteral("the record is another one"));
    std::thread([&] { editor.reset(); }).join();  // goes when the thread of the windows comes to it
    if (QApplication::topLevelWidgets().isEmpty()) result += Complain(QStringLiteral("gone early"));
    QCoreApplication::processEvents();
    if (!QApplication::topLevelWidgets().isEmpty()) result += Complain(QStringLiteral("not gone"));
    return result;
}

/// Qt's own statics came later than the editor, and go before it.
int LeaveAnEditorBehind() {
    static DocQueryEditor editor;
    editor.SetRecord(nullptr);
    return editor.Record() ? 0 : Complain(QStringLiteral("no record"));
}

int EndInsideOfTheDialog() {
    static DocQueryEditor editor;
    const Answerer answerer([](QWidget &) { std::exit(0); });
    editor.Execute();
    return Complain(QStringLiteral("the process is still there"));
}

int OutliveTheApplication(int aCount, char **aArguments) {
    std::unique_ptr<DocQueryEditor> first;
    for (int i = 0; i < 3; ++i) {
        const QApplication application(aCount, aArguments);
        bool seen = false;
        const Answerer answerer([&](QWidget &aWindow) {
            seen = true;
            aWindow.close();
        });
        auto editor = std::make_unique<DocQueryEditor>();
        editor->SetRecord(nullptr);
        if (i == 0)
            first = std::move(editor);
        else if (editor->Execute() || !seen)
            return Complain(QStringLiteral("not seen"));
    }
    first.reset();
    return 0;
}

}  // namespace

int main(int aCount, char **aArguments) {
    const QByteArray condition = aCount == 2 ? aArguments[1] : "";
    if (!SavesARecord()) return Complain(QStringLiteral("the record was not saved"));
    if (condition == "norecords") return MissTheRecords();
    VkTests::MemoryOffice::Install();
    if (condition == "none") return RunAndCancel();
    if (condition == "nodisplay") {
        return ExpectNoDisplay(QStringLiteral("переменные DISPLAY и WAYLAND_DISPLAY не заданы"));
    }
    if (condition == "deaddisplay")
        return ExpectNoDisplay(QStringLiteral("DISPLAY=\":987\" не отвечает"));
    if (condition == "deaddisplays") {
        return ExpectNoDisplay(
            QStringLiteral("WAYLAND_DISPLAY=\"wayland-987\" не отвечает, "
                           "DISPLAY=\":987\" не отвечает"));
    }
    if (condition == "refused") {
        return ExpectNoDisplay(
            QStringLiteral("DISPLAY=\"%1\" отказывает в доступе: ключ не подходит или его нет")
                .arg(qEnvironmentVariable("DISPLAY")));
    }
    if (condition == "static") return LeaveAnEditorBehind();
    if (condition == "exit") return EndInsideOfTheDialog();
    if (condition == "outlived") return OutliveTheApplication(aCount, aArguments);
    if (condition == "thread") return CallFromAnotherThread();
    if (condition == "core") {
        const QCoreApplication application(aCount, aArguments);
        return ExpectNoEditor(
            QStringLiteral("[QCoreApplication]\r\n"
                           "Окна показать нельзя: в программе создан объект приложения без "
                           "поддержки окон."));
    }
    return Complain(
        QStringLiteral("bare_host "
                       "none|core|nodisplay|deaddisplay|deaddisplays|refused|thread|static|exit|"
                       "outlived|norecords"));
}
