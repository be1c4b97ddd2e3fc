#include "Address.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>
#include <QUrlQuery>

#include <Vk_DocQuery/Failure.h>
#include <Vk_Records/Database.h>

namespace Vk_Records {

namespace {

/// A password may stand anywhere in a text that is no address: only one without any of the signs
/// that part a password from its neighbours is shown whole, of others the scheme at most.
QString Harmless(const QString &aText) {
    static const QRegularExpression harmless(
        QStringLiteral("^(?:sqlite::memory:|(?:[a-z]+://|sqlite:)?[^:@?#=&;%\\s\\p{C}]*)$"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression scheme(
        QStringLiteral("^\\s*((?:sqlite|postgres|postgresql):(?://)?)"),
        QRegularExpression::CaseInsensitiveOption);
    if (harmless.match(aText).hasMatch()) return aText;
    return scheme.match(aText).captured(1) + QStringLiteral("…");
}

[[noreturn]] void RaiseBad(const QString &aShown) {
    throw Vk_DocQuery::Failure(
        DatabaseAddressBad, QStringLiteral("Vk_Records"),
        QStringLiteral("Адрес базы данных \"%1\" не распознан. Укажите адрес вида "
                       "\"sqlite:/папка/office.db\" или \"postgresql://имя@сервер/база\".")
            .arg(aShown));
}

/// The address of a server behind the scheme of a file, or options that no file has.
bool MayHoldPassword(const QString &aPath) {
    static const QRegularExpression signs(
        QStringLiteral("://|^//[^/]*[:@]|:.*@|(?:^|[?&\\s])(?:pass(?:word|wd)?|pwd)="),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
    return signs.match(aPath).hasMatch();
}

Address FileAddress(const QString &aPath, const QString &aText) {
    // A database in memory would be another one for each thread.
    if (aPath.isEmpty() || aPath.startsWith(u':') || aPath.contains(QChar(0)) ||
        MayHoldPassword(aPath))
        RaiseBad(Harmless(aText));
    Address address;
    address.File = QFileInfo(aPath).absoluteFilePath();
    address.Shown = address.File;
    return address;
}

/// Takes what follows the question mark. Returns false for what cannot be passed on.
bool TakeOptions(const QUrlQuery &aQuery, Address &rAddress) {
    static const QRegularExpression name(QStringLiteral("^[A-Za-z_]+$"));
    static const QRegularExpression value(QStringLiteral("^[A-Za-z0-9_./:+-]*$"));
    for (const auto &[key, text] : aQuery.queryItems(QUrl::FullyDecoded)) {
        if (key == QStringLiteral("host")) {
            rAddress.Host = text;
        } else if (key == QStringLiteral("user")) {
            rAddress.User = text;
        } else if (key == QStringLiteral("password")) {
            rAddress.Password = text;
        } else if (name.match(key).hasMatch() && value.match(text).hasMatch()) {
            rAddress.Options += key + u'=' + text + u';';
        } else {
            return false;  // blanks and semicolons part the options in the driver
        }
    }
    return true;
}

/// Without the password, also where its colon was escaped and it became part of the name.
QString ShownOf(QUrl aUrl, const QString &aUser) {
    aUrl.setUserName(aUser.section(u':', 0, 0));
    return aUrl.toString(QUrl::RemovePassword | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

/// True if a sign stands where it can only be part of a password that was not escaped, or parts one
/// from a name.
bool IsTornApart(const QString &aText) {
    static const QRegularExpression torn(QStringLiteral("#|^[^/]*//[^/?]*(?:/[^?]*[:@]|[/?].*@)"),
                                         QRegularExpression::DotMatchesEverythingOption);
    return torn.match(aText).hasMatch();
}

Address ServerAddress(const QString &aText) {
    const QUrl url(aText, QUrl::StrictMode);
    if (!url.isValid() || IsTornApart(aText) || aText.contains(QStringLiteral("%00")))
        RaiseBad(Harmless(aText));
    Address address;
    address.IsServer = true;
    address.Host = url.host(QUrl::FullyDecoded);
    address.Port = url.port();
    address.User = url.userName(QUrl::FullyDecoded);
    address.Password = url.password(QUrl::FullyDecoded);
    address.Database = url.path(QUrl::FullyDecoded).mid(1);
    if (address.Database.isEmpty() || address.Database.contains(u'/')) RaiseBad(Harmless(aText));
    const bool isUsable = TakeOptions(QUrlQuery(url), address);
    address.Shown = ShownOf(url, address.User);
    if (!isUsable) RaiseBad(address.Shown);
    return address;
}

}  // namespace

Address AddressOf(const QString &aText) {
    static const QRegularExpression scheme(QStringLiteral("^\\s*(sqlite:|postgres(?:ql)?://)"),
                                           QRegularExpression::CaseInsensitiveOption);
    const auto match = scheme.match(aText);
    if (!match.hasMatch()) RaiseBad(Harmless(aText));
    if (match.captured(1).endsWith(u'/')) return ServerAddress(aText.trimmed());
    return FileAddress(aText.mid(match.capturedEnd()), aText);
}

}  // namespace Vk_Records
