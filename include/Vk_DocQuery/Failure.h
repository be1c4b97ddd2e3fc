#pragma once

#include <exception>

#include <QByteArray>
#include <QString>

#include <Vk_DocQuery/Export.h>

namespace Vk_DocQuery {

/// Numbers of the failures that the library raises itself. Suppliers of records may use any other
/// number; a number stays the same on the whole road up.
enum FailureNumber : qint32 {
    InvalidArgument = 5,      ///< an argument or a key that cannot be used
    ArithmeticOverflow = 6,   ///< the result of a 32-bit calculation does not fit
    OutOfMemory = 7,          ///< no memory is left
    SubscriptOutOfRange = 9,  ///< an index outside of its collection
    TypeMismatch = 13,        ///< a loose value that cannot be converted
    InternalFailure =
        51,  ///< an exception of the standard library or of Qt without a number of its own
    ObjectNotSet = 91,  ///< a member of an absent object was asked for
    ClassNotCreatable =
        429,  ///< no supplier has registered the class, or it cannot make the object
    MemberNotSupported = 438,  ///< the record class has no such member
    KeyAlreadyPresent = 457,   ///< a keyed collection holds the key already
    SaveFailed = 1001,         ///< VkDocQueryData::WriteToFile could not save
};

/// A failure on its way up: what the platform's raised error carries.
///
/// Every procedure that a failure crosses puts "[library::module.procedure]" in front of the
/// description, so that the outermost entry stands first and the text of the failure last; the
/// source is used up by the first of them.
class VK_DOCQUERY_EXPORT Failure : public std::exception {
public:
    /// aNumber is one of FailureNumber or a number of the supplier; aSource names where it arose,
    /// aDescription is the text for the user, in Russian; aLine is a line of source, or 0.
    Failure(qint32 aNumber, QString aSource, QString aDescription, qint32 aLine = 0);
    /// As what is thrown has to be.
    Failure(const Failure &);
    /// As what is thrown has to be.
    Failure &operator=(const Failure &);
    ~Failure() override;

    /// One of FailureNumber, or a number of the supplier.
    qint32 Number() const noexcept { return theNumber; }
    /// Where the failure arose; empty once a procedure has added its entry.
    const QString &Source() const noexcept { return theSource; }
    /// The chain of entries and the text, parted by CR LF.
    const QString &Description() const noexcept { return theDescription; }
    /// Source line, or 0 where none is kept.
    qint32 Line() const noexcept { return theLine; }

    /// The description as UTF-8.
    const char *what() const noexcept override;

private:
    qint32 theNumber;
    QString theSource;
    QString theDescription;
    qint32 theLine;
    QByteArray theUtf8;
};

}  // namespace Vk_DocQuery
