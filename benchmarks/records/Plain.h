#pragma once

#include <vector>

#include <QString>

struct sqlite3;

namespace VkBench {

/// What a program takes of an office by SQLite's C API alone, into plain structs; the names are put
/// in the same order as ours, by the same keys.

struct PlainPerson {
    qint64 ID = 0;
    qint64 Kind = 0;
    QString Inn;
    QString Kpp;
    QString Name;
    QString OwnerName;
    bool IsMain = false;
    qint64 ParentID = 0;
};

struct PlainStream {
    qint64 ID = 0;
    qint64 PersonID = 0;
    QString Name;
    QString Kpp;
    QString Offices;
    QString Icon;
    PlainPerson Owner;  // of a stream that is read by its identity
    PlainPerson Parent;
};

struct PlainForm {
    qint64 ID = 0;
    QString Knd;
    QString Name;
    QString Icon;
    bool IsExcluded = false;
    std::vector<QString> FullNames;
};

struct PlainVersion {
    qint64 ID = 0;
    QString From;
    QString To;
    QString Name;
    QString Icon;
    qint64 FormID = 0;
    QString FormName;
    QString Knd;
};

struct PlainStreams {
    std::vector<PlainStream> Streams;
    std::vector<PlainPerson> Owners;  // in the order of their identities
};

class PlainOffice {
public:
    explicit PlainOffice(const QString &aPath);
    ~PlainOffice();
    Q_DISABLE_COPY_MOVE(PlainOffice)

    std::vector<PlainPerson> Persons(bool aIsOrdered) const;
    PlainStreams Streams() const;
    std::vector<PlainForm> Forms(const QString &aFrom) const;
    std::vector<PlainVersion> Versions(const QString &aFrom) const;
    /// The forms that are not excluded, with their full names, by one joined request.
    std::vector<PlainForm> FormsWithNames(const QString &aFrom) const;
    /// Streams with owners and their organisations by one joined request; aIDs is an array of JSON.
    std::vector<PlainStream> StreamsOf(const QByteArray &aIDs) const;
    std::vector<PlainPerson> OneByOne(const std::vector<qint64> &aIDs) const;

private:
    sqlite3 *theFile = nullptr;
};

}  // namespace VkBench
