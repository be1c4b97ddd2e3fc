#pragma once

#include <memory>

#include <QString>

#include <Vk_DocQuery/LooseValue.h>
#include <Vk_DocQuery/Object.h>

namespace Vk_DocQuery {

class VkTemplType;
class VkPerson;

/// What all record classes share: the members that lists, files and filters ask for by name on a
/// record of unknown class. A class that lacks a member raises MemberNotSupported for it.
///
/// A record stays as it was read; SetID is called once, right after creation. Every member but ID
/// may raise a Failure of the supplier's own.
class VK_DOCQUERY_EXPORT Record : public Object {
public:
    ~Record() override;

    /// The identity; one identity stands for one record within one class.
    virtual double ID() const = 0;
    /// Loads the record with that identity. Raises a failure that names class and identity if there
    /// is none.
    virtual void SetID(double aID) = 0;

    /// The name that lists show and sort by.
    virtual QString GetDisplayName() const;
    /// Picture key; see PictureKeys.h.
    virtual QString GetIconKey() const;
    /// Picture key of a person as the owner of a stream.
    virtual QString GetIconKeyAsAccPerson() const;
    /// The form of a version.
    virtual std::shared_ptr<VkTemplType> TemplateType() const;
    /// A form's code, КНД.
    virtual QString KND() const;
    /// Short name of a form.
    virtual QString ShortName() const;
    /// Name of a stream.
    virtual QString DisplayName() const;
    /// Codes of a stream's controlling offices.
    virtual QString GetOfficeCodeForDisplay() const;
    /// КПП, the code of the reason of registration: nine digits, or empty.
    virtual QString Kpp() const;
    /// ИНН, the taxpayer number: ten or twelve digits.
    virtual QString Inn() const;
    /// The taxpayer who owns a stream.
    virtual std::shared_ptr<VkPerson> Person() const;
    /// The organisation of a branch.
    virtual std::shared_ptr<VkPerson> GetParentOrganization() const;
    /// A date or empty.
    virtual LooseValue BegDate() const;
    /// A date or empty.
    virtual LooseValue EndDate() const;
};

/// The key of a record in keyed collections and list rows: "_" and its ID in general number form.
VK_DOCQUERY_EXPORT QString ObjectKey(double aID);

/// One version of a report form, valid over a span of dates. Class name "Vk_Records.VkTemplate".
class VK_DOCQUERY_EXPORT VkTemplate : public Record {
public:
    ~VkTemplate() override;
    /// First day of validity, or empty.
    LooseValue BegDate() const override = 0;
    /// Last day of validity, or empty for an open end.
    LooseValue EndDate() const override = 0;
    /// The form of which this is a version.
    std::shared_ptr<VkTemplType> TemplateType() const override = 0;
    /// The name that lists show and sort by.
    QString GetDisplayName() const override = 0;
    /// Picture key, or an empty text for no picture.
    QString GetIconKey() const override = 0;
};

/// A report form across all its versions. Class name "Vk_Records.VkTemplType".
class VK_DOCQUERY_EXPORT VkTemplType : public Record {
public:
    ~VkTemplType() override;
    /// The form's code, КНД.
    QString KND() const override = 0;
    /// The name that lists show and sort by.
    QString ShortName() const override = 0;
    /// True leaves the form out of the template browser, and only there.
    virtual bool IsExcludedFromSearch() const = 0;
    /// Picture key, or an empty text for no picture.
    QString GetIconKey() const override = 0;
};

/// An accounting stream, in Russian комплект отчетности. Class name "Vk_Records.VkAccStream".
class VK_DOCQUERY_EXPORT VkAccStream : public Record {
public:
    ~VkAccStream() override;
    /// The taxpayer who owns the stream.
    std::shared_ptr<VkPerson> Person() const override = 0;
    /// The name that lists show and sort by.
    QString DisplayName() const override = 0;
    /// КПП, the code of the reason of registration; may be empty.
    QString Kpp() const override = 0;
    /// Picture key, or an empty text for no picture.
    QString GetIconKey() const override = 0;
    /// Code or codes of the controlling offices, as the user sees them.
    QString GetOfficeCodeForDisplay() const override = 0;
};

/// A taxpayer: an organisation, a branch of one, or a private person. Class name
/// "Vk_Records.VkPerson".
class VK_DOCQUERY_EXPORT VkPerson : public Record {
public:
    ~VkPerson() override;
    /// ИНН, the taxpayer number.
    QString Inn() const override = 0;
    /// КПП, the code of the reason of registration; may be empty.
    QString Kpp() const override = 0;
    /// The person is a separate branch and has a parent organisation.
    virtual bool IsBranch() const = 0;
    /// The person is an organisation, not a private person.
    virtual bool IsOrganization() const = 0;
    /// Never null: a person without a parent answers with a person whose ID is 0.
    std::shared_ptr<VkPerson> GetParentOrganization() const override = 0;
    /// The name that lists show and sort by.
    QString GetDisplayName() const override = 0;
    /// The form of the name that stands in the column of the parent organisation.
    virtual QString GetDisplayNameAsAccPerson() const = 0;
    /// Picture key of the person as the owner of a stream.
    QString GetIconKeyAsAccPerson() const override = 0;
    /// The person can be chosen as a head organisation.
    virtual bool IsMainOrganization() const = 0;
};

}  // namespace Vk_DocQuery
