#include "support/TestMain.h"

#include <utility>
#include <vector>

#include <QApplication>
#include <QTest>

namespace VkTests {

namespace {

using Entry = std::pair<QString, std::function<std::unique_ptr<QObject>()>>;

std::vector<Entry> &Entries() {
    static std::vector<Entry> entries;
    return entries;
}

}  // namespace

TestRegistration::TestRegistration(const char *aName,
                                   std::function<std::unique_ptr<QObject>()> aMake) {
    Entries().emplace_back(QString::fromUtf8(aName), std::move(aMake));
}

}  // namespace VkTests

/// test_program [Class ...] [options of Qt Test]
int main(int aCount, char **aArguments) {
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
