#include <QTest>

#include <Vk_DocQuery/ClassRegistry.h>
#include <Vk_DocQuery/Failure.h>
#include <Vk_DocQuery/KeyedCollection.h>

#include "support/RaisedBy.h"
#include "support/TestMain.h"

using namespace Vk_DocQuery;
using VkTests::RaisedBy;

namespace {

using Texts = KeyedCollection<QString>;

QStringList ItemsOf(const Texts &aTexts) {
    QStringList items;
    for (const QString &item : aTexts) items << item;
    return items;
}

QString Key(int aNumber) {
    return QStringLiteral("_%1").arg(aNumber);
}

}  // namespace

class TestKeyedCollection : public QObject {
    Q_OBJECT

private slots:
    void OrderIsThatOfAdding() {
        Texts texts;
        texts.Add(QStringLiteral("b"), QStringLiteral("k1"));
        texts.Add(QStringLiteral("a"));
        texts.Add(QStringLiteral("c"), QStringLiteral("k2"));
        QCOMPARE(ItemsOf(texts), QStringLiteral("b a c").split(u' '));
        QCOMPARE(texts.Count(), 3);
        QCOMPARE(texts.KeyAt(0), QStringLiteral("k1"));
        QCOMPARE(texts.KeyAt(1), QString());
    }

    void PresentKeyRaises() {
        Texts texts;
        texts.Add(QStringLiteral("a"), QStringLiteral("Ключ"));
        const Failure failure =
            RaisedBy([&] { texts.Add(QStringLiteral("b"), QStringLiteral("КЛЮЧ")); });
        QCOMPARE(failure.Number(), qint32(KeyAlreadyPresent));
        QCOMPARE(failure.Description(), QStringLiteral("Ключ \"КЛЮЧ\" уже есть в коллекции."));
        QCOMPARE(ItemsOf(texts), QStringList(QStringLiteral("a")));
        QVERIFY(!texts.AddIfAbsent(QStringLiteral("b"), QStringLiteral("ключ")));
        QVERIFY(texts.AddIfAbsent(QStringLiteral("b"), QStringLiteral("ключ2")));
    }

    void KeysCompareWithoutCase() {
        Texts texts;
        texts.Add(QStringLiteral("a"), QStringLiteral("Ёлка_A1"));
        QCOMPARE(texts.Fetch(QStringLiteral("ёЛКА_a1")), QStringLiteral("a"));
        QVERIFY(!texts.Contains(QStringLiteral("елка_a1")));
    }

    void MissingKeyRaises() {
        Texts texts;
        QCOMPARE(RaisedBy([&] { texts.Fetch(QStringLiteral("k")); }).Number(),
                 qint32(InvalidArgument));
        QCOMPARE(RaisedBy([&] { texts.Fetch(QStringLiteral("k")); }).Description(),
                 QStringLiteral("В коллекции нет элемента с ключом \"k\"."));
        QCOMPARE(RaisedBy([&] { texts.Remove(QStringLiteral("k")); }).Number(),
                 qint32(InvalidArgument));
        QVERIFY(!texts.Find(QStringLiteral("k")));
        QVERIFY(!texts.Find(QString()));
    }

    void IndexOutOfRangeRaises() {
        Texts texts;
        texts.Add(QStringLiteral("a"));
        for (const qsizetype index : {-1, 1}) {
            QCOMPARE(RaisedBy([&] { texts.At(index); }).Number(), qint32(SubscriptOutOfRange));
            QCOMPARE(RaisedBy([&] { texts.KeyAt(index); }).Number(), qint32(SubscriptOutOfRange));
            QCOMPARE(RaisedBy([&] { texts.RemoveAt(index); }).Number(),
                     qint32(SubscriptOutOfRange));
        }
    }

    void ManyKeysAreFoundAfterRemovals() {
        Texts texts;
        for (int i = 0; i < 1000; ++i) texts.Add(QString::number(i), Key(i));
        for (int i = 0; i < 1000; i += 3) texts.Remove(Key(i));
        for (int i = 0; i < 1000; ++i) {
            const QString *found = texts.Find(Key(i));
            QCOMPARE(found != nullptr, i % 3 != 0);
            if (found) QCOMPARE(*found, QString::number(i));
        }
        texts.Add(QStringLiteral("again"), Key(0));
        QCOMPARE(texts.Fetch(Key(0)), QStringLiteral("again"));
        QCOMPARE(RaisedBy([&] { texts.Add(QString(), Key(1)); }).Number(),
                 qint32(KeyAlreadyPresent));
        texts.Clear();
        QVERIFY(texts.IsEmpty());
        texts.Add(QStringLiteral("a"), Key(1));
        QCOMPARE(texts.Count(), 1);
    }

    void RemovingTheOnlyItemLeavesAUsableCollection() {
        Texts texts;
        texts.Add(QStringLiteral("a"));
        texts.RemoveAt(0);
        QVERIFY(!texts.Contains(Key(1)));
        texts.Add(QStringLiteral("b"), Key(1));
        QVERIFY(texts.Contains(Key(1)));
    }

    void ItemsWithoutKeysStandAmongThoseWithKeys() {
        Texts texts;
        texts.Reserve(100);
        for (int i = 0; i < 100; ++i)
            texts.Add(QString::number(i), i % 4 == 1 ? Key(i) : QString());
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(texts.KeyAt(i), i % 4 == 1 ? Key(i) : QString());
            const QString *found = texts.Find(Key(i));
            QCOMPARE(found != nullptr, i % 4 == 1);
            if (found) QCOMPARE(*found, QString::number(i));
        }
        texts.RemoveAt(99);  // behind the last key
        texts.RemoveAt(0);   // before the first
        QCOMPARE(texts.KeyAt(0), Key(1));
        QCOMPARE(texts.Fetch(Key(97)), QStringLiteral("97"));
        texts.Add(QStringLiteral("last"), QStringLiteral("last"));
        QCOMPARE(texts.Count(), 99);
        QCOMPARE(texts.KeyAt(97), QString());
        QCOMPARE(texts.KeyAt(98), QStringLiteral("last"));
        QCOMPARE(texts.Fetch(QStringLiteral("last")), QStringLiteral("last"));
    }

    void WhatWasMovedFromIsEmpty() {
        Texts first;
        first.Add(QStringLiteral("a"));
        first.Add(QStringLiteral("b"), Key(1));
        const Texts second = std::move(first);
        QCOMPARE(second.Fetch(Key(1)), QStringLiteral("b"));
        first = Texts();
        first.Add(QStringLiteral("c"), Key(1));
        QCOMPARE(first.Count(), 1);
        QCOMPARE(first.Fetch(Key(1)), QStringLiteral("c"));
        QCOMPARE(second.KeyAt(0), QString());
    }

    void CopiesAreApart() {
        Texts first;
        first.Add(QStringLiteral("a"), Key(1));
        Texts second = first;
        second.Add(QStringLiteral("b"), Key(2));
        QCOMPARE(first.Count(), 1);
        QVERIFY(!first.Contains(Key(2)));
        QVERIFY(second.Contains(Key(1)));
    }

    void RegistryMakesWhatWasEntered() {
        const QString name = QStringLiteral("Test.Collection");
        int made = 0;
        ClassRegistry::Register(name, [&]() -> std::shared_ptr<Object> {
            ++made;
            return nullptr;
        });
        QVERIFY(ClassRegistry::IsRegistered(QStringLiteral("TEST.collection")));
        const Failure failure = RaisedBy([&] { ClassRegistry::Create(name); });
        QCOMPARE(failure.Number(), qint32(ClassNotCreatable));
        QCOMPARE(failure.Description(),
                 QStringLiteral("Не удалось создать объект класса \"Test.Collection\"."));
        QCOMPARE(made, 1);
        QCOMPARE(
            RaisedBy([&] { ClassRegistry::Create(name, QStringLiteral("srv")); }).Description(),
            QStringLiteral("Класс \"Test.Collection\" нельзя создать на другом компьютере."));
        ClassRegistry::Unregister(name);
        QVERIFY(!ClassRegistry::IsRegistered(name));
    }
};

VK_TEST_CLASS(TestKeyedCollection);

#include "TestKeyedCollection.moc"
