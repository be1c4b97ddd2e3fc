#pragma once

#include <memory>
#include <vector>

#include <QString>

#include <Vk_DocQuery/KeyedCollection.h>
#include <Vk_DocQuery/Records.h>

#include "lists/ListView.h"

namespace Vk_DocQuery {

/// Numbers of the types of objects that the picker offers.
enum ObjectsType : qint32 {
    TemplateVersions = 1,
    TemplateClasses = 2,
    AccountStreams = 3,
    TaxpayerPersons = 4,
    MainOrganizations = 5,
};

/// The cells of a row by which the filter finds it.
struct SearchedCells {
    int First = 1;
    int Last = 1;
};

/// What sets one type of objects apart from the others.
struct ObjectsTypeFacts {
    struct Column {
        QString Caption;
        int Width;  ///< twips
    };

    qint32 Type;
    QString Title;
    QString Word;  ///< what the message about an empty offer calls the objects
    std::vector<Column> Columns;
    /// Asks the provider for everything of the type.
    std::shared_ptr<RecordCollection> (*Load)();
    /// Writes picture and cells of a row. Each member of the record, and each object behind it, is
    /// asked for once.
    SearchedCells (*Show)(const Record &aRecord, ListRow &aRow);
};

/// Null for a number that is no type.
const ObjectsTypeFacts *FactsOfObjectsType(qint32 aType);

}  // namespace Vk_DocQuery
