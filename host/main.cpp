// An example of a program that embeds the library, over a sample office.
//   vk_docquery_host [--dark] [DATABASE]     such as sqlite:/home/me/office.db
#include <QApplication>
#include <QDir>
#include <QStandardPaths>

#include "Application.h"
#include "HostWindow.h"

namespace {

/// The sample office in the user's own folder; it is made on first use.
QString SampleOffice() {
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation));
    folder.mkpath(QStringLiteral("."));
    return QStringLiteral("sqlite:") + folder.filePath(QStringLiteral("office.db"));
}

}  // namespace

int main(int aCount, char **aArguments) {
    QApplication application(aCount, aArguments);
    PrepareApplication();

    QStringList arguments = QApplication::arguments().mid(1);
    if (arguments.removeAll(QStringLiteral("--dark")) > 0) TakeDarkColours();
    if (arguments.size() > 1 || arguments.join(u' ').startsWith(u'-')) {
        qCritical("usage: vk_docquery_host [--dark] [DATABASE]");
        return 2;
    }
    if (!OpenRecords(arguments.isEmpty() ? SampleOffice() : arguments.first())) return 1;
    HostWindow window;
    window.show();
    return QApplication::exec();
}
