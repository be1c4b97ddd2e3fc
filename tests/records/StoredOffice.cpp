#include "StoredOffice.h"

#include <QFile>

namespace VkTests {

namespace {

const QStringList theTables = {
    QStringLiteral("acc_stream"),
    QStringLiteral("acc_stream_type"),
    QStringLiteral("person"),
    QStringLiteral("templ_type"),
    QStringLiteral("templ_type_category"),
    QStringLiteral("templ_type_name"),
    QStringLiteral("templ_type_time"),
    QStringLiteral("template"),
};

QString RowText(const OfficeFolder &aFolder, const QString &aAddress, const QString &aTable) {
    if (!aAddress.startsWith(QStringLiteral("sqlite")))
        return QStringLiteral("row_to_json(%1)::text").arg(aTable);
    return aFolder
        .Tamper(aAddress,
                {QStringLiteral("SELECT group_concat('quote(' || name || ')', ' || ') FROM "
                                "pragma_table_info('%1')")
                     .arg(aTable)})
        .toString();
}

}  // namespace

QString StoredOffice(OfficeFolder &aFolder, int aVersion) {
    QString address = aFolder.NewAddress();
    const QString name = QStringLiteral(VK_TEST_DATA "/offices/office-%1.").arg(aVersion);
    if (address.startsWith(QStringLiteral("sqlite"))) {
        const QString path = aFolder.Shown(address);
        if (!QFile::copy(name + QStringLiteral("db"), path)) qFatal("no copy");
        QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        return address;
    }
    QFile file(name + QStringLiteral("sql"));
    if (!file.open(QIODevice::ReadOnly)) qFatal("no stored office");
    aFolder.Tamper(address, {QString::fromUtf8(file.readAll())});
    return address;
}

int VersionIn(const OfficeFolder &aFolder, const QString &aAddress) {
    return aFolder.Tamper(aAddress, {QStringLiteral("SELECT version FROM vk_schema")}).toInt();
}

QString ContentsOf(const OfficeFolder &aFolder, const QString &aAddress) {
    const bool isFile = aAddress.startsWith(QStringLiteral("sqlite"));
    QString all;
    for (const QString &table : theTables) {
        const QString row = table == QStringLiteral("templ_type_name")
                                ? QStringLiteral(
                                      "templ_type_id || '|' || name_order || '|' || "
                                      "coalesce(full_name, '')")
                                : RowText(aFolder, aAddress, table);
        all += table + u'\n' +
               aFolder
                   .Tamper(aAddress,
                           {(isFile ? QStringLiteral("SELECT group_concat(r, '\n') FROM (SELECT "
                                                     "%1 AS r FROM %2 ORDER BY 1)")
                                    : QStringLiteral("SELECT string_agg(r, '\n') FROM (SELECT "
                                                     "%1 AS r FROM %2 ORDER BY 1) AS rows"))
                                .arg(row, table)})
                   .toString() +
               u'\n';
    }
    return all;
}

QString ShapeOf(const OfficeFolder &aFolder, const QString &aAddress) {
    if (aAddress.startsWith(QStringLiteral("sqlite"))) {
        return aFolder
            .Tamper(aAddress,
                    {QStringLiteral("SELECT group_concat(replace(sql, '\"', ''), '\n') FROM "
                                    "(SELECT sql FROM sqlite_master ORDER BY name)")})
            .toString();
    }
    return aFolder
        .Tamper(aAddress,
                {QStringLiteral(
                    "SELECT string_agg(line, '\n' ORDER BY line) FROM ("
                    "SELECT table_name || ' ' || column_name || ' ' || data_type || ' ' || "
                    "is_nullable || ' ' || ordinal_position AS line FROM "
                    "information_schema.columns WHERE table_schema = 'public' "
                    "UNION ALL SELECT conrelid::regclass || ' ' || pg_get_constraintdef(oid) FROM "
                    "pg_constraint WHERE connamespace = 'public'::regnamespace "
                    "UNION ALL SELECT indexdef FROM pg_indexes WHERE schemaname = 'public') AS "
                    "lines")})
        .toString();
}

}  // namespace VkTests
