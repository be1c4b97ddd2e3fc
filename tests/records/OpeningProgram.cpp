// A host beside ours: it says "ready", waits for a line of its input, opens the office at the
// address it was given and says "open" or why not.
#include <cstdio>
#include <iostream>
#include <string>

#include <QCoreApplication>

#include <Vk_DocQuery/Failure.h>
#include <Vk_Records/Database.h>

namespace {

void Say(const char *aText) {
    std::puts(aText);
    std::fflush(stdout);
}

}  // namespace

int main(int aCount, char **aArguments) try {
    const QCoreApplication application(aCount, aArguments);
    Say("ready");
    std::string line;
    std::getline(std::cin, line);
    Vk_Records::OpenDatabase(QString::fromLocal8Bit(aArguments[1]));
    Say("open");
    return 0;
} catch (const Vk_DocQuery::Failure &failure) {
    Say(failure.what());
    return 1;
}
