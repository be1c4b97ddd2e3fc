// What the browser of report forms costs beside what it cannot do without, over an office of 20,000
// forms with three full names each.
#include <cstdio>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QStringMatcher>
#include <QTemporaryDir>

#include <Vk_DocQuery/Failure.h>
#include <Vk_Records/Database.h>

#include "browser/TemplateQuerierForm.h"
#include "browser/TextPane.h"
#include "Figure.h"
#include "foundation/mVkCommonCalc.h"
#include "foundation/mVkDBProvider.h"
#include "LargeOffice.h"
#include "lists/ListView.h"

using namespace Vk_DocQuery;

namespace {

constexpr int theForms = 20000;
constexpr double theFormWithRows = 777;

const char *const theFill[] = {
    "INSERT INTO templ_type_name SELECT templ_type_id, 2, full_name || ', прежнее наименование' "
    "FROM templ_type_name WHERE name_order = 1",
    "INSERT INTO templ_type_name SELECT templ_type_id, 3, 'Сведения, ' || full_name || ' (КНД)' "
    "FROM templ_type_name WHERE name_order = 1",
    // What a monthly and quarterly form of all streams has: 8 years by 16 periods, 8 categories by
    // 4 streams.
    "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 127) "
    "INSERT INTO templ_type_time SELECT 777, CAST(strftime('%Y', 'now') AS INTEGER) - i / 16, "
    "i % 16 + 1 FROM n",
    "WITH RECURSIVE n(i) AS (SELECT 0 UNION ALL SELECT i + 1 FROM n WHERE i < 35) "
    "INSERT INTO templ_type_category SELECT 777, i / 4 + 1, i % 4 + 1, 1, i % 2 FROM n",
};

void FillFurther(const QString &aPath) {
    const QString name = QStringLiteral("fill");
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        database.setDatabaseName(aPath);
        if (!database.open()) qFatal("%s", qPrintable(database.lastError().text()));
        database.transaction();
        QSqlQuery query(database);
        for (const char *sql : theFill)
            if (!query.exec(QString::fromUtf8(sql)))
                qFatal("%s", qPrintable(query.lastError().text()));
        database.commit();
    }
    QSqlDatabase::removeDatabase(name);
}

void OpenOffice(const QString &aFolder) {
    const QString path = aFolder + QStringLiteral("/office.db");
    const QString address = QStringLiteral("sqlite:") + path;
    Vk_Records::OfficeSize size;
    size.Forms = theForms;
    Vk_Records::MakeLargeOffice(address, size);
    FillFurther(path);
    Vk_Records::OpenDatabase(address, Vk_Records::NewDatabase::Empty);
}

/// Everything that the browser must ask for, and nothing done with it. Gives what is searched.
std::vector<QString> ReadForms() {
    std::vector<QString> texts;
    const auto forms =
        GetBlankQueries().GetTemplates(QDate::currentDate().addDays(-1827), Null(), true);
    texts.reserve(static_cast<std::size_t>(forms->Count()));
    for (const auto &record : *forms) {
        const auto &form = static_cast<const VkTemplType &>(*record);
        if (form.IsExcludedFromSearch()) continue;
        static_cast<void>(form.GetIconKey());
        QString text = form.ShortName() + u'|' + form.KND();
        const auto names = GetBlankQueries().GetTemplTypeNames(form.ID());
        for (names->MoveFirst(); !names->EndOfData(); names->MoveNext())
            text += u'|' + VarToStrDef(names->Value(QStringLiteral("full_name")), QString());
        texts.push_back(std::move(text));
    }
    return texts;
}

qint64 ReadBare(Recordset &aRows, std::initializer_list<QString> aFields) {
    qint64 sum = 0;
    for (aRows.MoveFirst(); !aRows.EndOfData(); aRows.MoveNext())
        for (const QString &field : aFields) sum += VarToLongDef(aRows.Value(field), 0);
    return sum;
}

void ReadAvailability() {
    std::shared_ptr<Recordset> categories;
    std::shared_ptr<Recordset> times;
    GetBlankQueries().GetTemplTypeAvailability(1, theFormWithRows, categories, times);
    const qint64 sum =
        ReadBare(*categories,
                 {QStringLiteral("TPCategory_ID"), QStringLiteral("AccStreamType"),
                  QStringLiteral("AllowedForMainOrg"), QStringLiteral("AllowedForBranch")}) +
        ReadBare(*times, {QStringLiteral("the_year"), QStringLiteral("month_id")});
    if (sum == 0) qFatal("the form has no rows");
}

struct Bench {
    Bench() {
        Form.Prepare();
        Form.show();
        Settle();
        for (QString &text : Texts) text = text.toUpper();
        if (List->RowCount() != theForms) qFatal("%d forms", List->RowCount());
    }

    static void Settle() {
        QApplication::sendPostedEvents();
        QApplication::processEvents();
    }
    void SetFilter(const QString &aText) {
        Filter->setText(aText);
        Settle();
    }
    void Press(QChar aTyped) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(aTyped));
        QApplication::sendEvent(List, &press);
        Settle();
    }
    std::size_t Scan(const QString &aNeedle) const {
        const QStringMatcher matcher(aNeedle.toUpper());
        std::size_t found = 0;
        for (const QString &text : Texts)
            if (matcher.indexIn(text) >= 0) ++found;
        return found;
    }

    TemplateQuerierForm Form;
    QLineEdit *Filter = Form.findChild<QLineEdit *>(QStringLiteral("theFilterA"));
    ListView *List = Form.findChild<ListView *>(QStringLiteral("theFormList"));
    std::vector<QString> Texts = ReadForms();
};

/// From the key press to the painted page, beside a scan of the same texts and one repaint of the
/// page that comes out.
void MeasureKey(const QString &aName, const QString &aBefore, QChar aTyped) {
    if (!VkBench::IsWanted(aName)) return;
    Bench bench;
    const QString needle = aBefore + aTyped;
    const auto found = static_cast<int>(bench.Scan(needle));
    VkBench::Figure figure;
    figure.Name = aName;
    figure.PeerName = QStringLiteral("bare scan and one repaint");
    figure.Bar = 1.5;
    figure.Rounds = 31;
    figure.BeforeOurs = [&] { bench.SetFilter(aBefore); };
    figure.Ours = [&] {
        bench.Press(aTyped);
        if (bench.List->RowCount() != found) qFatal("%d rows", bench.List->RowCount());
    };
    figure.BeforePeer = [&] { bench.SetFilter(needle); };
    figure.Peer = [&] {
        if (static_cast<int>(bench.Scan(needle)) != found) qFatal("the scan has changed");
        bench.List->viewport()->repaint();
    };
    VkBench::Measure(figure);
}

void MeasureOpening() {
    VkBench::Figure figure;
    figure.Name = QStringLiteral("browser: open with 20000 forms");
    figure.PeerName = QStringLiteral("the provider's own time");
    figure.Bar = 1.3;
    figure.Rounds = 5;
    figure.Ours = [] {
        TemplateQuerierForm form;
        form.Prepare();
        form.show();
        Bench::Settle();
    };
    figure.Peer = [] {
        if (ReadForms().size() != theForms) qFatal("forms are missing");
    };
    VkBench::Measure(figure);
}

void MeasureFormChanged() {
    const QString name = QStringLiteral("browser: FormChanged, 50 times");
    if (!VkBench::IsWanted(name)) return;
    Bench bench;
    bench.List->SetSelectedItem(bench.List->RowByKey(ObjectKey(theFormWithRows)));
    constexpr int times = 50;
    VkBench::Figure figure;
    figure.Name = name;
    figure.PeerName = QStringLiteral("its two recordsets read bare");
    figure.Bar = 2;
    figure.Rounds = 21;
    figure.Ours = [&] {
        for (int i = 0; i < times; ++i) bench.Form.FormChanged();
    };
    figure.Peer = [] {
        for (int i = 0; i < times; ++i) ReadAvailability();
    };
    VkBench::Measure(figure);
}

}  // namespace

/// bench_browser [part of a figure's name]
int main(int aCount, char **aArguments) try {
    QApplication application(aCount, aArguments);
    if (aCount > 1) VkBench::SetFilter(QString::fromLocal8Bit(aArguments[1]));
    const QTemporaryDir folder;
    OpenOffice(folder.path());
    MeasureKey(QStringLiteral("browser: key that keeps all forms"), QString(), u'о');
    MeasureKey(QStringLiteral("browser: key that keeps a tenth"), QStringLiteral("мая"), u'к');
    MeasureKey(QStringLiteral("browser: key that leaves one form"), QStringLiteral("110077"), u'7');
    MeasureOpening();
    MeasureFormChanged();
    Vk_Records::CloseDatabase();
    return 0;
} catch (const Failure &failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
