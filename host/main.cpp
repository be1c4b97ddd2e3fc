// An example of a program that embeds the library, over a sample office.
//   norvik [--dark | --colours NAME] [DATABASE]     such as sqlite:/home/me/office.db
#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include "Application.h"
#include "HostWindow.h"

using Vk_Records::NewDatabase;

namespace {

/// The sample office in the user's own folder; it is made on first use.
QString SampleOffice() {
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    folder.mkpath(QStringLiteral("."));
    return QStringLiteral("sqlite:") + folder.filePath(QStringLiteral("office.db"));
}

/// Takes the options out of the arguments; false if one of them is wrong.
bool TakeOptions(QStringList &rArguments) {
    if (rArguments.removeAll(QStringLiteral("--dark")) > 0) TakeColours(u"dark");
    const qsizetype option = rArguments.indexOf(QStringLiteral("--colours"));
    if (option >= 0) {
        if (!TakeColours(rArguments.value(option + 1))) return false;
        rArguments.remove(option, 2);
    }
    return rArguments.size() <= 1 && !rArguments.join(u' ').startsWith(u'-');
}

}  // namespace

int main(int aCount, char **aArguments) {
    QApplication application(aCount, aArguments);
    PrepareApplication();

    QStringList arguments = QApplication::arguments().mid(1);
    if (!TakeOptions(arguments)) {
        qCritical(
            "usage: norvik [--dark | --colours NAME] [DATABASE]\n"
            "NAME is dark, black-on-white, white-on-black or yellow-on-black");
        return 2;
    }
    // A database that the user names is one that is there: a slip must not invent another office.
    const bool isOpen = arguments.isEmpty()
                            ? OpenRecords(SampleOffice(), NewDatabase::WithSampleOffice)
                            : OpenRecords(arguments.first(), NewDatabase::Refused);
    if (!isOpen) return 1;
    HostWindow window;
    window.show();
    return QApplication::exec();
}
