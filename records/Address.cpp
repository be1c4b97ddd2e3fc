#include "Address.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

#include <Vk_DocQuery/Failure.h>
#include <Vk_Records/Database.h>

namespace Vk_Records {

namespace {

const QString theFilePrefix = QStringLiteral("sqlite:");
const QString theServerScheme = QStringLiteral("postgresql");

[[noreturn]] void RaiseBad(const QString &aShown) {
    throw Vk_DocQuery::Failure(
        DatabaseAddressBad, QStringLiteral("Vk_Records"),
        QStringLiteral("Адрес базы данных \"%1\" не распознан. Укажите адрес вида "
                       "\"sqlite:/папка/office.db\" или \"postgresql://имя@сервер/база\".")
            .arg(aShown));
}

Address FileAddress(const QString &aText) {
    const QString path = aText.mid(theFilePrefix.size());
    // A database in memory would be another one for each thread.
    if (path.isEmpty() || path.startsWith(u':') || path.contains(QChar(0))) RaiseBad(aText);
    Address address;
    address.File = QFileInfo(path).absoluteFilePath();
    address.Shown = address.File;
    return address;
}

QString OptionsOf(const QUrlQuery &aQuery, const QString &aShown, QString &rHost) {
    static const QRegularExpression name(QStringLiteral("^[A-Za-z_]+$"));
    static const QRegularExpression value(QStringLiteral("^[A-Za-z0-9_./:+-]*$"));
    QString options;
    for (const auto &[key, text] : aQuery.queryItems(QUrl::FullyDecoded)) {
        if (key == QStringLiteral("host")) {
            rHost = text;
            continue;
        }
        // Blanks and semicolons part the options in the driver, and it cannot be told otherwise.
        if (!name.match(key).hasMatch() || !value.match(text).hasMatch()) RaiseBad(aShown);
        options += key + u'=' + text + u';';
    }
    return options;
}

Address ServerAddress(const QString &aText) {
    const QUrl url(aText, QUrl::StrictMode);
    if (!url.isValid()) {
        // What cannot be taken apart may hold a password anywhere up to the last "@".
        RaiseBad(theServerScheme + QStringLiteral("://…") + aText.mid(aText.lastIndexOf(u'@') + 1));
    }
    Address address;
    address.IsServer = true;
    address.Shown = url.toString(QUrl::RemovePassword | QUrl::RemoveQuery | QUrl::RemoveFragment);
    address.Host = url.host(QUrl::FullyDecoded);
    address.Port = url.port();
    address.User = url.userName(QUrl::FullyDecoded);
    address.Password = url.password(QUrl::FullyDecoded);
    address.Database = url.path(QUrl::FullyDecoded).mid(1);
    if (address.Database.isEmpty() || address.Database.contains(u'/')) RaiseBad(address.Shown);
    address.Options = OptionsOf(QUrlQuery(url), address.Shown, address.Host);
    return address;
}

}  // namespace

Address AddressOf(const QString &aText) {
    if (aText.startsWith(theFilePrefix)) return FileAddress(aText);
    if (aText.startsWith(theServerScheme + QStringLiteral("://"))) return ServerAddress(aText);
    RaiseBad(aText);
}

}  // namespace Vk_Records
