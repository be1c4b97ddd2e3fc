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

    virtual QString GetDisplayName() const;
    virtual QString GetIconKey() const;
    virtual QString GetIconKeyAsAccPerson() const;
    virtual std::shared_ptr<VkTemplType> TemplateType() const;
    virtual QString KND() const;
    virtual QString ShortName() const;
    virtual QString DisplayName() const;
    virtual QString GetOfficeCodeForDisplay() const;
    virtual QString Kpp() const;
    virtual QString Inn() const;
    virtual std::shared_ptr<VkPerson> Person() const;
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
    QString ShortName() const override = 0;
    /// True leaves the form out of the template browser, and only there.
    virtual bool IsExcludedFromSearch() const = 0;
    QString GetIconKey() const override = 0;
};

/// An accounting stream, in Russian комплект отчетности. Class name "Vk_Records.VkAccStream".
class VK_DOCQUERY_EXPORT VkAccStream : public Record {
public:
    ~VkAccStream() override;
    /// The taxpayer who owns the stream.
    std::shared_ptr<VkPerson> Person() const override = 0;
    QString DisplayName() const override = 0;
    QString Kpp() const override = 0;
    QString GetIconKey() const override = 0;
    /// Code or codes of the controlling offices, as the user sees them.
    QString GetOfficeCodeForDisplay() const override = 0;
};

/// A taxpayer: an organisation, a branch of one, or a private person. Class name
/// "Vk_Records.VkPerson".
class VK_DOCQUERY_EXPORT VkPerson : public Record {
public:
    ~VkPerson() override;
    QString Inn() const override = 0;
    QString Kpp() const override = 0;
    /// The person is a separate branch and has a parent organisation.
    virtual bool IsBranch() const = 0;
    /// The person is an organisation, not a private person.
    virtual bool IsOrganization() const = 0;
    /// Never null: a person without a parent answers with a person whose ID is 0.
    std::shared_ptr<VkPerson> GetParentOrganization() const override = 0;
    QString GetDisplayName() const override = 0;
    /// The form of the name that stands in the column of the parent organisation.
    virtual QString GetDisplayNameAsAccPerson() const = 0;
    /// Picture key of the person as the owner of a stream.
    QString GetIconKeyAsAccPerson() const override = 0;
    /// The person can be chosen as a head organisation.
    virtual bool IsMainOrganization() const = 0;
};

}  // namespace Vk_DocQuery
