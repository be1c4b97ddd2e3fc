#include "QueryFile.h"

#include <QFile>

namespace VkBench {

QByteArray ScatteredIDs(int aCount) {
    QByteArray ids;
    for (qint64 i = 0; i < aCount; ++i)
        ids += (i == 0 ? "" : ",") + QByteArray::number(i * 7919 % aCount + 1);
    return ids;
}

QString WriteQueryFile(const QString &aFolder, int aCount) {
    QByteArray text =
        "<?xml version=\"1.0\" encoding=\"windows-1251\"?>\n<VkDocQuery ver=\"1\">"
        "<AccStreamCriteria IsAccStreamsList=\"1\"><AccStreamsList>\n";
    for (const QByteArray &id : ScatteredIDs(aCount).split(','))
        text += "<i id=\"" + id + "\" />\n";
    text += "</AccStreamsList></AccStreamCriteria></VkDocQuery>\n";
    QString path = aFolder + QStringLiteral("/all.qvk");
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) qFatal("no file");
    return path;
}

}  // namespace VkBench
