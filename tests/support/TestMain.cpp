#include "support/TestMain.h"

#include <utility>
#include <vector>

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryFile>
#include <QTest>

namespace VkTests {

namespace {

using Entry = std::pair<QString, std::function<std::unique_ptr<QObject>()>>;

std::vector<Entry> &Entries() {
    static std::vector<Entry> entries;
    return entries;
}

/// Screens beside one another, as VK_SCREENS tells them ("1920x1080 1024x600"); without it one with
/// room for every window in every scale.
void MakeScreens(QTemporaryFile &rFile) {
    const QString wanted =
        qEnvironmentVariable("VK_SCREENS", QStringLiteral("3840x2400")).simplified();
    QJsonArray screens;
    int left = 0;
    for (const QString &screen : wanted.split(u' ')) {
        const int width = screen.section(u'x', 0, 0).toInt();
        screens.append(QJsonObject{{QStringLiteral("name"), screen},
                                   {QStringLiteral("x"), left},
                                   {QStringLiteral("y"), 0},
                                   {QStringLiteral("width"), width},
                                   {QStringLiteral("height"), screen.section(u'x', 1).toInt()},
                                   {QStringLiteral("logicalDpi"), 96},
                                   {QStringLiteral("logicalBaseDpi"), 96},
                                   {QStringLiteral("dpr"), 1}});
        left += width;
    }
    const QJsonObject configuration{{QStringLiteral("screens"), screens}};
    if (!rFile.open() || rFile.write(QJsonDocument(configuration).toJson()) < 0 || !rFile.flush())
        qFatal("the screens cannot be written down");
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + QFile::encodeName(rFile.fileName()));
}

}  // namespace

TestRegistration::TestRegistration(const char *aName,
                                   std::function<std::unique_ptr<QObject>()> aMake) {
    Entries().emplace_back(QString::fromUtf8(aName), std::move(aMake));
}

}  // namespace VkTests

/// test_program [Class ...] [options of Qt Test]
int main(int aCount, char **aArguments) {
    QTemporaryFile screens;
    if (qgetenv("QT_QPA_PLATFORM") == "offscreen") VkTests::MakeScreens(screens);
    QApplication application(aCount, aArguments);
    QStringList wanted;
    QStringList passedOn{application.arguments().constFirst()};
    for (const QString &argument : application.arguments().mid(1)) {
        bool isClass = false;
        for (const auto &[name, make] : VkTests::Entries()) isClass = isClass || name == argument;
        (isClass ? wanted : passedOn) << argument;
    }
    int failures = 0;
    int run = 0;
    for (const auto &[name, make] : VkTests::Entries()) {
        if (!wanted.isEmpty() && !wanted.contains(name)) continue;
        const auto test = make();
        failures += QTest::qExec(test.get(), passedOn);
        ++run;
    }
    if (run == 0) qCritical("no test class of that name");
    return run == 0 ? 1 : failures;
}
