#include <algorithm>
#include <array>
#include <iterator>
#include <random>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/VkDocQueryData.h>

#include "support/TestMain.h"

using namespace Vk_DocQuery;

namespace {

/// How many files a run reads: the suite's share, or as many as VK_MUTATIONS says.
constexpr int theUsualNumber = 2000;
constexpr qsizetype theLongestChange = 60;

/// What hurts where it does not belong, and numbers and dates at and over their edges.
constexpr std::array theFragments = {"&amp;",
                                     "&#0;",
                                     "&#x110000;",
                                     "&#1078;",
                                     "&nbsp;",
                                     "&",
                                     "<!--",
                                     "-->",
                                     "<![CDATA[",
                                     "]]>",
                                     "<?xml version='1.0'?>",
                                     "<?a b?>",
                                     "<!DOCTYPE a [<!ENTITY e 'x'>]>",
                                     "&e;",
                                     " xmlns:a='b'",
                                     "a:",
                                     "<i id='7'/>",
                                     "<i id=''/>",
                                     "</VkDocQuery>",
                                     "<VkDocQuery>",
                                     "\"",
                                     "'",
                                     "=",
                                     ">",
                                     "<",
                                     "/>",
                                     " Notes='again'",
                                     "\r\n",
                                     "\t",
                                     "31.12.9999",
                                     "29.02.1900",
                                     "0.0.0",
                                     "-2147483648",
                                     "2147483648",
                                     "1e308",
                                     "nan",
                                     "yes",
                                     "2",
                                     "\xEF\xBB\xBF",
                                     "\xFF\xFE",
                                     "\xC6",
                                     "\xED\xA0\x80"};

constexpr std::array theSets = {"utf-8", "UTF-16",       "windows-1251", "koi8-r",
                                "cp866", "UTF-7",        "latin1",       "us-ascii",
                                "",      "windows-1252", "iso-8859-5"};

constexpr std::array theEncodings = {QStringConverter::Utf8,    QStringConverter::Utf16LE,
                                     QStringConverter::Utf16BE, QStringConverter::Utf32LE,
                                     QStringConverter::Utf32BE, QStringConverter::Latin1};

class AnyRecord : public Record {
public:
    double ID() const override { return theID; }
    void SetID(double aID) override { theID = aID; }

private:
    double theID = 0;
};

/// Changes files in ways that depend on the seed alone.
class Mutator {
public:
    explicit Mutator(unsigned int aSeed) : theRandom(aSeed) {}

    qsizetype Below(qsizetype aBound) {
        return aBound <= 0 ? 0 : static_cast<qsizetype>(theRandom() % static_cast<quint64>(aBound));
    }
    QByteArray Mutated(QByteArray aBytes) {
        for (qsizetype change = 0, count = 1 + Below(4); change < count; ++change) Change(aBytes);
        return aBytes;
    }

private:
    void Change(QByteArray &rBytes) {
        const qsizetype place = Below(rBytes.size());
        const qsizetype length = 1 + Below(theLongestChange);
        switch (Below(10)) {
            case 0:
                if (!rBytes.isEmpty())
                    rBytes[place] = static_cast<char>(rBytes[place] ^ (1 << Below(8)));
                break;
            case 1:
                if (!rBytes.isEmpty()) rBytes[place] = static_cast<char>(Below(256));
                break;
            case 2:
                rBytes.truncate(place);
                break;
            case 3:
                rBytes.remove(place, length);
                break;
            case 4:
                rBytes.insert(place, rBytes.mid(Below(rBytes.size()), length));
                break;
            case 5:
            case 6:
                rBytes.insert(place, theFragments[Index(theFragments)]);
                break;
            case 7:
                DoubleTag(rBytes, place);
                break;
            case 8:
                Declare(rBytes);
                break;
            default:
                Encode(rBytes);
        }
    }
    template <class Array>
    std::size_t Index(const Array &aArray) {
        return static_cast<std::size_t>(Below(std::ssize(aArray)));
    }
    static void DoubleTag(QByteArray &rBytes, qsizetype aPlace) {
        const qsizetype begin = rBytes.indexOf('<', aPlace);
        const qsizetype end = begin < 0 ? -1 : rBytes.indexOf('>', begin);
        if (end > 0) rBytes.insert(begin, rBytes.mid(begin, end - begin + 1));
    }
    void Declare(QByteArray &rBytes) {
        const qsizetype begin = rBytes.indexOf("encoding=");
        const qsizetype value = begin + 10;
        const qsizetype end = begin < 0 ? -1 : rBytes.indexOf(rBytes.mid(value - 1, 1), value);
        if (end > 0) rBytes.replace(value, end - value, theSets[Index(theSets)]);
    }
    void Encode(QByteArray &rBytes) {
        using Flag = QStringConverter::Flag;
        QStringEncoder encoder(theEncodings[Index(theEncodings)],
                               Below(2) == 0 ? Flag::Default : Flag::WriteBom);
        rBytes = encoder.encode(QString::fromLatin1(rBytes));
    }

    std::mt19937_64 theRandom;
};

QByteArray BytesOf(const QString &aName) {
    QFile file(aName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace

/// Files that somebody or something has changed: each is read, or refused with a reason, and what
/// has been read can be saved and read again as the same.
class TestMutatedFiles : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        ClassRegistry::Unregister(QStringLiteral("Vk_Lib.FilesLibrary"));  // the library's own
        for (const char *name : {"VkTemplType", "VkTemplate", "VkAccStream", "VkPerson"})
            ClassRegistry::Register(QStringLiteral("Vk_Records.") + QLatin1String(name),
                                    [] { return std::make_shared<AnyRecord>(); });
        for (const char *folder : {"/saved", "/broken"}) {
            const QDir files(QStringLiteral(VK_TEST_DATA) + QLatin1String(folder));
            for (const QString &name : files.entryList({QStringLiteral("*.qvk")}, QDir::Files))
                theFiles << BytesOf(files.filePath(name));
        }
        QVERIFY(theFiles.size() > 20);
    }

    void ReadOrRefused() {
        bool isGiven = false;
        const int given = qEnvironmentVariableIntValue("VK_MUTATIONS", &isGiven);
        const int count = isGiven ? given : theUsualNumber;
        int read = 0;
        for (int seed = 0; seed < count; ++seed) {
            Mutator mutator(static_cast<unsigned int>(seed));
            const QByteArray bytes = mutator.Mutated(theFiles[mutator.Below(theFiles.size())]);
            Write(bytes);
            QString wrong;
            try {
                wrong = WhatIsWrong(read);
            } catch (const Failure &failure) {
                wrong = failure.Description();
            }
            QVERIFY2(wrong.isEmpty(), qPrintable(QStringLiteral("seed %1: %2\n%3")
                                                     .arg(QString::number(seed), wrong,
                                                          QString::fromLatin1(bytes))));
        }
        // Neither all nor none: the files are changed, and not beyond recognition.
        QVERIFY2(read > count / 20 && read < count - count / 20,
                 QByteArray::number(read).constData());
    }

private:
    void Write(const QByteArray &aBytes) const {
        QFile file(theName);
        if (!file.open(QIODevice::WriteOnly) || file.write(aBytes) != aBytes.size())
            qFatal("cannot write");
    }

    QString WhatIsWrong(int &rRead) const {
        VkDocQueryData record;
        if (!record.ReadFromXmlFile(theName)) {
            static const QRegularExpression explained(
                QStringLiteral("^   Reason: [^\r\n]+\r\n   Source: [^\r\n]*\r\n   Line: [0-9]+$"));
            const bool isExplained =
                explained.match(record.LastError).hasMatch() || record.LastError == theNoRoot;
            if (!isExplained || record.LastError.size() > 1000)
                return QStringLiteral("refused: ") + record.LastError;
            return record.FileName.isEmpty() ? QString() : QStringLiteral("has a name");
        }
        ++rRead;
        if (!record.LastError.isEmpty()) return QStringLiteral("read: ") + record.LastError;
        const QString text = record.WriteToXmlString(true, 0);
        if (!record.WriteToXmlFile(theSaved)) return QStringLiteral("saved: ") + record.LastError;
        VkDocQueryData again;
        if (!again.ReadFromXmlFile(theSaved)) return QStringLiteral("again: ") + again.LastError;
        return again.WriteToXmlString(true, 0) == text ? QString() : QStringLiteral("another");
    }

    const QString theNoRoot = QStringLiteral(
        "Неверный формат файла критериев поиска. Отсутствует корневой узел VkDocQuery.");
    QList<QByteArray> theFiles;
    QTemporaryDir theFolder{(QFileInfo(QStringLiteral("/dev/shm")).isWritable()
                                 ? QStringLiteral("/dev/shm")
                                 : QDir::tempPath()) +
                            QStringLiteral("/mutated-")};
    QString theName = theFolder.filePath(QStringLiteral("a.qvk"));
    QString theSaved = theFolder.filePath(QStringLiteral("b.qvk"));
};

VK_TEST_CLASS(TestMutatedFiles);

#include "TestMutatedFiles.moc"
