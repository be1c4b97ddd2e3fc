#pragma once

#include <QString>

namespace Vk_DocQuery {

enum class ElementKind {
    Frame,
    HiddenFrame,
    PlainFrame,
    CheckBox,
    Option,
    Button,
    List,
    Text,
    Label,
    ScrollBox,
    FixedCombo,
    EditableCombo,
    NumberBox,
    DateBox,
    Image,
};

constexpr int theNoIndex = -1;
constexpr int theNoTabOrder = -1;

/// An element of the panel. Measures are twips from the parent's left top corner.
struct ElementRow {
    const char *Name;
    ElementKind Kind;
    const char *Inside;  ///< the direct parent
    int Index;           ///< of an element array
    int Left, Top, Width, Height;
    int TabOrder;
    const char16_t *Caption;
    const char *ExplainedBy = "";  ///< whose caption tells what an element without a caption is for
};

struct TabRow {
    const char *Key;
    const char16_t *Caption;
    const char *Page;
};

// The panel as it is designed, and the place of its pages; twips.
constexpr int thePanelWidth = 12315;
constexpr int thePanelHeight = 8835;
constexpr int thePageLeft = 30;
constexpr int thePageTop = 360;

/// A namespace, so that the kinds of elements can go by their short names.
namespace PanelLayout {

using enum ElementKind;

// clang-format off: one row is one line.
/// In the order in which the elements are made: a parent stands before what is in it.
inline constexpr ElementRow theElementRows[] = {
    // Name, kind, inside, index, left, top, width, height, tab order, caption, explained by
    // Tab "taxpayer"
    {"theTaxpayersFrame", Frame, "theTaxpayerPanel", -1, 180, 180, 11955, 7575, 131,
     u"             ", "theIsTaxpayers"},
    {"theTaxpayersFrame2", PlainFrame, "theTaxpayersFrame", -1, 480, 780, 11355, 6555, 133, u""},
    {"theIncludeMainOrgDocs", CheckBox, "theTaxpayersFrame2", -1, 180, 6060, 4515, 315, 4,
     u"Включая документы самой головной организации"},
    {"theTaxpayerAdd", Button, "theTaxpayersFrame2", -1, 7680, 5940, 1695, 555, 5, u"Добавить ..."},
    {"theTaxpayerDelete", Button, "theTaxpayersFrame2", -1, 9480, 5940, 1635, 555, 6, u"Удалить"},
    {"theTaxpayersList", List, "theTaxpayersFrame2", -1, 0, 0, 11235, 5895, 3, u"",
     "theIsTaxpayers"},
    {"theTaxpayersFrame3", PlainFrame, "theTaxpayersFrame", -1, 480, 300, 11175, 435, 132, u""},
    {"theOptMainOrgs", Option, "theTaxpayersFrame3", -1, 3600, 60, 6015, 315, 2,
     u"Обособленные подразделения, чьей головной организацией является ..."},
    {"theOptTaxpayers", Option, "theTaxpayersFrame3", -1, 0, 60, 3135, 315, 1,
     u"Конкретные налогоплательщики"},
    {"theIsTaxpayers", CheckBox, "theTaxpayersFrame", -1, 240, 0, 2775, 255, 0,
     u"Список налогоплательщиков"},

    // Tab "accstream"
    {"theAccStreamsListFrame", Frame, "theAccStreamPanel", -1, 180, 3300, 11895, 4995, 129,
     u"            ", "theIsAccStreamsList"},
    {"theAccStreamsListFrame2", PlainFrame, "theAccStreamsListFrame", -1, 480, 360, 11175, 4515,
     130, u""},
    {"theAccStreamAdd", Button, "theAccStreamsListFrame2", -1, 7620, 3960, 1695, 495, 25,
     u"Добавить ..."},
    {"theAccStreamDelete", Button, "theAccStreamsListFrame2", -1, 9420, 3960, 1635, 495, 26,
     u"Удалить"},
    {"theAccStreamsList", List, "theAccStreamsListFrame2", -1, 0, 0, 11175, 3915, 24, u"",
     "theIsAccStreamsList"},
    {"theIsAccStreamsList", CheckBox, "theAccStreamsListFrame", -1, 240, 0, 3855, 255, 23,
     u"Список конкретных комплектов отчетности"},
    {"theContoraFrame", Frame, "theAccStreamPanel", -1, 5100, 1140, 6975, 2055, 127,
     u" Коды контролирующих органов "},
    {"theContoraJoinFrame", PlainFrame, "theContoraFrame", -1, 900, 840, 3135, 255, 136, u""},
    {"theContoraJoinOr", Option, "theContoraJoinFrame", -1, 1140, 0, 1215, 255, 20, u"... ИЛИ ..."},
    {"theContoraJoinAnd", Option, "theContoraJoinFrame", -1, 0, 0, 975, 255, 19, u"... И ..."},
    {"theIsContoraPrefix1", CheckBox, "theContoraFrame", -1, 240, 420, 3675, 195, 17,
     u"Код первого контр. органа начинается на..."},
    {"theContoraPrefix1", Text, "theContoraFrame", -1, 4080, 360, 2655, 315, 18, u"",
     "theIsContoraPrefix1"},
    {"theIsContoraPrefix2", CheckBox, "theContoraFrame", -1, 240, 1260, 3675, 195, 21,
     u"Код второго контр. органа начинается на..."},
    {"theContoraPrefix2", Text, "theContoraFrame", -1, 4080, 1200, 2655, 315, 22, u"",
     "theIsContoraPrefix2"},
    {"Label3", Label, "theContoraFrame", -1, 540, 1680, 6195, 195, 128,
     u"(можно указывать несколько кодов, разделяя их пробелами или запятыми)"},
    {"theAccStreamOpenessFrame", Frame, "theAccStreamPanel", -1, 5100, 180, 6975, 855, 125,
     u"                    ", "theIsAccStreamOpeness"},
    {"theIsAccStreamOpeness", CheckBox, "theAccStreamOpenessFrame", -1, 240, 0, 1755, 255, 14,
     u"Открыт/ закрыт"},
    {"theAccStreamOpenessFrame2", PlainFrame, "theAccStreamOpenessFrame", -1, 1980, 360, 3015, 255,
     126, u""},
    {"theAccStreamClosed", Option, "theAccStreamOpenessFrame2", -1, 1380, 0, 1155, 255, 16,
     u"Закрыт"},
    {"theAccStreamOpen", Option, "theAccStreamOpenessFrame2", -1, 0, 0, 1095, 255, 15, u"Открыт"},
    {"theAccStreamTypeFrame", Frame, "theAccStreamPanel", -1, 180, 180, 4695, 3015, 123,
     u"               ", "theIsAccStreamType"},
    {"theIsAccStreamType", CheckBox, "theAccStreamTypeFrame", -1, 240, 0, 2475, 255, 7,
     u"Тип комплекта отчетности"},
    {"theAccStreamTypeBox", ScrollBox, "theAccStreamTypeFrame", -1, 540, 360, 3915, 2355, 124, u"",
     "theIsAccStreamType"},
    {"theAccStreamTypes", CheckBox, "theAccStreamTypeBox", 5, 180, 1620, 3555, 195, 13,
     u"Отчетность ОФР"},
    {"theAccStreamTypes", CheckBox, "theAccStreamTypeBox", 4, 180, 1320, 3555, 195, 12,
     u"Отчетность в Росалкогольрегулирование"},
    {"theAccStreamTypes", CheckBox, "theAccStreamTypeBox", 3, 180, 1020, 3555, 195, 11,
     u"Отчетность в ФСС"},
    {"theAccStreamTypes", CheckBox, "theAccStreamTypeBox", 2, 180, 720, 3555, 195, 10,
     u"Отчетность в Росстат"},
    {"theAccStreamTypes", CheckBox, "theAccStreamTypeBox", 1, 180, 420, 3555, 195, 9,
     u"РСВ, НДФЛ и отчетность в ПФР"},
    {"theAccStreamTypes", CheckBox, "theAccStreamTypeBox", 0, 180, 120, 3555, 195, 8,
     u"Отчетность в ИФНС"},

    // Tab "time"
    {"thePeriodsFrame", Frame, "thePeriodPanel", -1, 180, 180, 11895, 3855, 117,
     u"                  ", "theIsPeriods"},
    {"theIsPeriods", CheckBox, "thePeriodsFrame", -1, 240, 0, 1935, 255, 27, u"Период отчетности"},
    {"thePeriodsFrame2", PlainFrame, "thePeriodsFrame", -1, 420, 480, 11295, 3075, 118, u""},
    {"thePeriodsFrame3", Frame, "thePeriodsFrame2", -1, 7440, 0, 3495, 2955, 134, u"         ",
     "theIsPeriodTypes"},
    {"theIsPeriodTypes", CheckBox, "thePeriodsFrame3", -1, 240, 0, 3075, 255, 37,
     u"только периоды следующего типа:"},
    {"thePeriodTypesBox", ScrollBox, "thePeriodsFrame3", -1, 540, 420, 2715, 2295, 135, u"",
     "theIsPeriodTypes"},
    {"thePeriodTypes", CheckBox, "thePeriodTypesBox", 0, 120, 60, 2055, 255, 38, u"месяцы"},
    {"thePeriodTypes", CheckBox, "thePeriodTypesBox", 1, 120, 360, 2055, 255, 39, u"кварталы 1-3"},
    {"thePeriodTypes", CheckBox, "thePeriodTypesBox", 2, 120, 660, 2055, 255, 40, u"4-й квартал"},
    {"thePeriodTypes", CheckBox, "thePeriodTypesBox", 3, 120, 960, 2055, 255, 41,
     u"полугодие, год"},
    {"thePeriodTypes", CheckBox, "thePeriodTypesBox", 4, 120, 1260, 2055, 255, 42, u"\"иное\""},
    {"thePeriodTypes", CheckBox, "thePeriodTypesBox", 5, 120, 1560, 2055, 255, 43,
     u"запросы и переписка"},
    {"thePeriodTypes", CheckBox, "thePeriodTypesBox", 6, 120, 1860, 2055, 255, 44, u"документы"},
    {"theOtherPeriod", Option, "thePeriodsFrame2", -1, 120, 1920, 2235, 195, 36,
     u"Период \"Прочее\""},
    {"thePerMonth2", FixedCombo, "thePeriodsFrame2", -1, 3300, 1260, 1455, 315, 35, u"",
     "thePerLabel2"},
    {"thePerYear2", EditableCombo, "thePeriodsFrame2", -1, 2280, 1260, 855, 315, 34, u"",
     "thePerLabel2"},
    {"theOnePerYear", EditableCombo, "thePeriodsFrame2", -1, 2280, 120, 855, 315, 29, u"",
     "theOnePerYearLabel"},
    {"thePerMonth1", FixedCombo, "thePeriodsFrame2", -1, 3300, 840, 1455, 315, 33, u"",
     "thePerLabel1"},
    {"thePerYear1", EditableCombo, "thePeriodsFrame2", -1, 2280, 840, 855, 315, 32, u"",
     "thePerLabel1"},
    {"theRangePeriods", Option, "thePeriodsFrame2", -1, 120, 900, 1275, 195, 31, u"Диапазон"},
    {"theOnePeriod", Option, "thePeriodsFrame2", -1, 120, 180, 1515, 195, 28, u"Один период"},
    {"thePeriodTime", FixedCombo, "thePeriodsFrame2", -1, 4320, 120, 2655, 315, 30, u"",
     "thePeriodTimeLabel"},
    {"thePerLabel2", Label, "thePeriodsFrame2", -1, 1680, 1320, 435, 195, 122, u"по:"},
    {"thePerLabel1", Label, "thePeriodsFrame2", -1, 1680, 900, 435, 195, 121, u"с:"},
    {"thePeriodTimeLabel", Label, "thePeriodsFrame2", -1, 3300, 180, 855, 195, 120, u"Период:"},
    {"theOnePerYearLabel", Label, "thePeriodsFrame2", -1, 1680, 180, 435, 195, 119, u"Год:"},

    // Tab "template"
    {"theTemplateFrame", Frame, "theTemplatePanel", -1, 180, 180, 11895, 7095, 114,
     u"                                  ", "theIsTemplate"},
    {"theTemplateTypeFrame", PlainFrame, "theTemplateFrame", -1, 480, 360, 6195, 435, 116, u""},
    {"theOptTemplateClass", Option, "theTemplateTypeFrame", -1, 0, 60, 2955, 315, 46,
     u"Наименование отчетной формы"},
    {"theOptTemplate", Option, "theTemplateTypeFrame", -1, 3120, 60, 2895, 315, 47,
     u"Наименование и версия бланка"},
    {"theIsTemplate", CheckBox, "theTemplateFrame", -1, 240, 0, 2925, 255, 45,
     u"Список отчетных форм (бланков)"},
    {"theTemplatesListFrame", PlainFrame, "theTemplateFrame", -1, 480, 960, 11355, 5955, 115, u""},
    {"theTemplatesDelete", Button, "theTemplatesListFrame", -1, 9360, 5280, 1635, 555, 50,
     u"Удалить"},
    {"theTemplatesAdd", Button, "theTemplatesListFrame", -1, 7560, 5280, 1695, 555, 49,
     u"Добавить ..."},
    {"theTemplatesList", List, "theTemplatesListFrame", -1, 0, 0, 11175, 5235, 48, u"",
     "theIsTemplate"},

    // Tab "doc"
    {"theNotesFrame", Frame, "theDocPanel", -1, 180, 2355, 4515, 1545, 145,
     u"                      ", "theIsNotes"},
    {"theIsNotes", CheckBox, "theNotesFrame", -1, 240, 0, 1335, 255, 148, u"Примечание"},
    {"theNotesFrame2", PlainFrame, "theNotesFrame", -1, 120, 360, 4365, 1065, 146, u"Не пусто"},
    {"theNotesLike", Option, "theNotesFrame2", -1, 165, 735, 1170, 255, 151, u"Содержит"},
    {"theNotesNotEmpty", Option, "theNotesFrame2", -1, 165, 375, 1200, 255, 150, u"Не пусто"},
    {"theNotesEmpty", Option, "theNotesFrame2", -1, 165, 15, 1200, 255, 149, u"Пусто"},
    {"theNotes", Text, "theNotesFrame2", -1, 1350, 690, 2925, 315, 147, u"", "theNotesLike"},
    {"theDocNumFrame", Frame, "theDocPanel", -1, 5040, 2340, 6135, 1575, 138,
     u"                     ", "theIsDocNum"},
    {"theDocNumFrame2", PlainFrame, "theDocNumFrame", -1, 240, 360, 5595, 1035, 139, u""},
    {"theDocLastNumFrame", PlainFrame, "theDocNumFrame2", -1, 3000, 600, 2655, 315, 143, u""},
    {"theDocLastNumCount", NumberBox, "theDocLastNumFrame", -1, 1800, 0, 735, 315, 66, u"",
     "Label4"},
    {"Label4", Label, "theDocLastNumFrame", -1, 585, 60, 1095, 195, 144, u"количество:"},
    {"theDocNumRangeFrame", PlainFrame, "theDocNumFrame2", -1, 3000, 0, 2655, 315, 140, u""},
    {"theDocNum1", NumberBox, "theDocNumRangeFrame", -1, 360, 0, 735, 315, 63, u"",
     "theDocNum1Label"},
    {"theDocNum2", NumberBox, "theDocNumRangeFrame", -1, 1800, 0, 735, 315, 64, u"",
     "theDocNum2Label"},
    {"theDocNum1Label", Label, "theDocNumRangeFrame", -1, 0, 60, 255, 195, 142, u"с:"},
    {"theDocNum2Label", Label, "theDocNumRangeFrame", -1, 1380, 60, 315, 195, 141, u"по:"},
    {"theDocLastNumMode", Option, "theDocNumFrame2", -1, 0, 660, 3315, 255, 65,
     u"Последние созданные документы"},
    {"theDocNumRange", Option, "theDocNumFrame2", -1, 0, 60, 2895, 255, 62,
     u"Диапазон номеров документов"},
    {"theIsDocNum", CheckBox, "theDocNumFrame", -1, 240, 0, 1815, 255, 61, u"Номер документа "},
    {"theWholePfrCluster", CheckBox, "theDocPanel", -1, 180, 4260, 8985, 585, 137,
     u"Если в результаты поиска попадает документ отчетности, "
     u"содержащий индивидуальные сведения о физ лицах, такие как "
     u"отчеты в ПФР, РСВ, 2-НДФЛ или 6-НДФЛ за год, то добавлять к "
     u"списку весь комплект документов (и пакет сведений, и конечные "
     u"сформированные документы)"},
    {"theFssFrame", HiddenFrame, "theDocPanel", -1, 4200, 7800, 3735, 4635, 98,
     u"                      ", "theIsFss"},
    {"theIsFss", CheckBox, "theFssFrame", -1, 240, 0, 2475, 255, 107, u"Отправка через сайт ФСС"},
    {"theFssFrame2", PlainFrame, "theFssFrame", -1, 240, 300, 3315, 4095, 99, u""},
    {"theIsFssStages", CheckBox, "theFssFrame2", -1, 0, 0, 2475, 255, 101,
     u"Стадия документооборота"},
    {"theIsFssTerms", CheckBox, "theFssFrame2", -1, 0, 2640, 3135, 255, 100,
     u"Завершенность документооборота"},
    {"theFssStagesBox", ScrollBox, "theFssFrame2", -1, 300, 360, 2955, 2115, 102, u"",
     "theIsFssStages"},
    {"theFssStages", CheckBox, "theFssStagesBox", 5, 120, 1680, 2475, 255, 113,
     u"Принят, есть квитанция"},
    {"theFssStages", CheckBox, "theFssStagesBox", 4, 120, 1380, 2775, 255, 112,
     u"Пройден логический контроль"},
    {"theFssStages", CheckBox, "theFssStagesBox", 3, 120, 1080, 2775, 255, 111,
     u"Пройден форматный контроль"},
    {"theFssStages", CheckBox, "theFssStagesBox", 2, 120, 780, 2835, 255, 110,
     u"Расшифрован, ЭЦП проверена"},
    {"theFssStages", CheckBox, "theFssStagesBox", 1, 120, 480, 2475, 255, 109,
     u"Документ получен ФСС"},
    {"theFssStages", CheckBox, "theFssStagesBox", 0, 120, 60, 2475, 375, 108,
     u"Не отправлялся в ФСС либо не получен ФСС"},
    {"theFssTermsBox", ScrollBox, "theFssFrame2", -1, 300, 3000, 2955, 1035, 103, u"",
     "theIsFssTerms"},
    {"theFssTerms", CheckBox, "theFssTermsBox", 0, 120, 60, 2415, 255, 106,
     u"В процессе (не завершен)"},
    {"theFssTerms", CheckBox, "theFssTermsBox", 1, 120, 360, 2295, 255, 105, u"Завершен успешно"},
    {"theFssTerms", CheckBox, "theFssTermsBox", 2, 120, 660, 2295, 255, 104, u"Завершен с ошибкой"},
    {"theOrvexFrame", HiddenFrame, "theDocPanel", -1, 480, 7800, 3555, 4635, 81,
     u"                      ", "theIsOrvex"},
    {"theOrvexFrame2", PlainFrame, "theOrvexFrame", -1, 240, 300, 3135, 4095, 83, u""},
    {"theIsOrvexTerms", CheckBox, "theOrvexFrame2", -1, 0, 2640, 3135, 255, 92,
     u"Завершенность документооборота"},
    {"theIsOrvexStages", CheckBox, "theOrvexFrame2", -1, 0, 0, 2475, 255, 84,
     u"Стадия документооборота"},
    {"theOrvexStagesBox", ScrollBox, "theOrvexFrame2", -1, 300, 360, 2775, 1935, 85, u"",
     "theIsOrvexStages"},
    {"theOrvexStages", CheckBox, "theOrvexStagesBox", 5, 120, 1560, 2535, 255, 91,
     u"Есть уведомление ИФНС"},
    {"theOrvexStages", CheckBox, "theOrvexStagesBox", 4, 120, 1260, 2535, 255, 90,
     u"Есть результаты проверки"},
    {"theOrvexStages", CheckBox, "theOrvexStagesBox", 3, 120, 960, 2535, 255, 89,
     u"Есть отчет доставки"},
    {"theOrvexStages", CheckBox, "theOrvexStagesBox", 2, 120, 660, 2535, 255, 88, u"Отправлен"},
    {"theOrvexStages", CheckBox, "theOrvexStagesBox", 1, 120, 360, 2535, 255, 87,
     u"Проверен в Орвекс"},
    {"theOrvexStages", CheckBox, "theOrvexStagesBox", 0, 120, 60, 2535, 255, 86,
     u"Не передавался в Орвекс"},
    {"theOrvexTermsBox", ScrollBox, "theOrvexFrame2", -1, 300, 3000, 2775, 1035, 93, u"",
     "theIsOrvexTerms"},
    {"theOrvexTerms", CheckBox, "theOrvexTermsBox", 2, 120, 660, 2295, 255, 96,
     u"Завершен с ошибкой"},
    {"theOrvexTerms", CheckBox, "theOrvexTermsBox", 1, 120, 360, 2295, 255, 95,
     u"Завершен успешно"},
    {"theOrvexTerms", CheckBox, "theOrvexTermsBox", 0, 120, 60, 2415, 255, 94,
     u"В процессе (не завершен)"},
    {"theIsOrvex", CheckBox, "theOrvexFrame", -1, 240, 0, 2895, 255, 82, u"Отправка через Орвекс"},
    {"theSignerFioFrame", Frame, "theDocPanel", -1, 5040, 1260, 4935, 915, 79,
     u"                      ", "theIsSignerFio"},
    {"theSignerFioFrame2", PlainFrame, "theSignerFioFrame", -1, 540, 360, 3015, 375, 80, u""},
    {"theSignerSurname", Text, "theSignerFioFrame2", -1, 0, 0, 2595, 315, 60, u"",
     "theIsSignerFio"},
    {"theIsSignerFio", CheckBox, "theSignerFioFrame", -1, 240, 0, 2175, 255, 59,
     u"Фамилия подписанта"},
    {"theSignDateFrame", Frame, "theDocPanel", -1, 5040, 180, 4935, 915, 75,
     u"                      ", "theIsSignDate"},
    {"theIsSignDate", CheckBox, "theSignDateFrame", -1, 240, 0, 1695, 195, 56, u"Дата документа"},
    {"theSignDateFrame2", PlainFrame, "theSignDateFrame", -1, 420, 360, 3915, 375, 76, u""},
    {"theSignDate1", DateBox, "theSignDateFrame2", -1, 360, 0, 1395, 315, 57, u"", "Label1"},
    {"theSignDate2", DateBox, "theSignDateFrame2", -1, 2280, 0, 1395, 315, 58, u"", "Label2"},
    {"Label2", Label, "theSignDateFrame2", -1, 1860, 60, 315, 195, 78, u"по:"},
    {"Label1", Label, "theSignDateFrame2", -1, 0, 60, 255, 195, 77, u"с:"},
    {"theDocStatusFrame", Frame, "theDocPanel", -1, 180, 180, 4515, 1995, 73, u"          ",
     "theIsDocStatus"},
    {"theDocStatusFrame2", PlainFrame, "theDocStatusFrame", -1, 540, 300, 3615, 1575, 74, u""},
    {"theDocStatusBox", ScrollBox, "theDocStatusFrame2", -1, 0, 0, 2775, 1455, 97, u"",
     "theIsDocStatus"},
    {"theDocStatuses", CheckBox, "theDocStatusBox", 3, 390, 1020, 1800, 195, 55, u"Уточнён"},
    {"theDocStatuses", CheckBox, "theDocStatusBox", 2, 390, 720, 1800, 195, 54, u"Сдан"},
    {"theDocStatuses", CheckBox, "theDocStatusBox", 1, 390, 420, 1800, 195, 53, u"Готов к сдаче"},
    {"theDocStatuses", CheckBox, "theDocStatusBox", 0, 390, 120, 1800, 195, 52, u"В работе"},
    {"theImage3", Image, "theDocStatusBox", -1, 60, 690, 240, 240, -1, u""},
    {"theImage4", Image, "theDocStatusBox", -1, 60, 990, 240, 240, -1, u""},
    {"theImage2", Image, "theDocStatusBox", -1, 60, 390, 240, 240, -1, u""},
    {"theImage1", Image, "theDocStatusBox", -1, 60, 90, 240, 240, -1, u""},
    {"theIsDocStatus", CheckBox, "theDocStatusFrame", -1, 240, 0, 2115, 255, 51,
     u"Состояние документа"},
};

inline constexpr TabRow theTabRows[] = {
    {"taxpayer", u"Налогоплательщик", "theTaxpayerPanel"},
    {"accstream", u"Комплект отчетности", "theAccStreamPanel"},
    {"time", u"Период отчетности", "thePeriodPanel"},
    {"template", u"Отчетная форма", "theTemplatePanel"},
    {"doc", u"Свойства документов", "theDocPanel"},
};
// clang-format on

}  // namespace PanelLayout

using PanelLayout::theElementRows;
using PanelLayout::theTabRows;

/// "theDocStatuses(3)" for an element of an array.
QString ObjectName(const char *aName, int aIndex = theNoIndex);

}  // namespace Vk_DocQuery
