#include "Application.h"

#include <array>
#include <span>

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPalette>
#include <QPushButton>
#include <QTranslator>

#include <Vk_DocQuery/Failure.h>

namespace {

struct Shade {
    QPalette::ColorRole Role;
    QRgb Colour;
};

struct Colours {
    const char16_t *Name;
    std::span<const Shade> Shades;
    QRgb DisabledText;
};

constexpr auto theDarkShades = std::to_array<Shade>({
    {QPalette::Window, 0xFF2D2D30},      {QPalette::WindowText, 0xFFE6E6E6},
    {QPalette::Base, 0xFF1E1E21},        {QPalette::AlternateBase, 0xFF28282B},
    {QPalette::Text, 0xFFE6E6E6},        {QPalette::PlaceholderText, 0xFF9A9A9E},
    {QPalette::Button, 0xFF3C3C40},      {QPalette::ButtonText, 0xFFE6E6E6},
    {QPalette::BrightText, 0xFFFF7B72},  {QPalette::Light, 0xFF5A5A5F},
    {QPalette::Midlight, 0xFF4A4A4F},    {QPalette::Mid, 0xFF28282B},
    {QPalette::Dark, 0xFF1A1A1C},        {QPalette::Shadow, 0xFF0A0A0B},
    {QPalette::Highlight, 0xFF2A6CB0},   {QPalette::HighlightedText, 0xFFFFFFFF},
    {QPalette::Link, 0xFF7AB4FF},        {QPalette::LinkVisited, 0xFFB79CFF},
    {QPalette::ToolTipBase, 0xFF3C3C40}, {QPalette::ToolTipText, 0xFFE6E6E6},
});

/// Two colours and what lies between them; the selection changes the two round.
constexpr std::array<Shade, 20> HighContrast(QRgb aGround, QRgb aText, QRgb aFaint) {
    return {{
        {QPalette::Window, aGround},      {QPalette::WindowText, aText},
        {QPalette::Base, aGround},        {QPalette::AlternateBase, aGround},
        {QPalette::Text, aText},          {QPalette::PlaceholderText, aFaint},
        {QPalette::Button, aGround},      {QPalette::ButtonText, aText},
        {QPalette::BrightText, aText},    {QPalette::Light, aText},
        {QPalette::Midlight, aFaint},     {QPalette::Mid, aFaint},
        {QPalette::Dark, aFaint},         {QPalette::Shadow, aText},
        {QPalette::Highlight, aText},     {QPalette::HighlightedText, aGround},
        {QPalette::Link, aText},          {QPalette::LinkVisited, aText},
        {QPalette::ToolTipBase, aGround}, {QPalette::ToolTipText, aText},
    }};
}

constexpr QRgb theBlack = 0xFF000000;
constexpr QRgb theWhite = 0xFFFFFFFF;
constexpr QRgb theYellow = 0xFFFFFF00;
constexpr QRgb theGreyOnWhite = 0xFF595959;
constexpr QRgb theGreyOnBlack = 0xFFA6A6A6;
constexpr QRgb theOliveOnBlack = 0xFFA8A800;

constexpr auto theBlackOnWhite = HighContrast(theWhite, theBlack, theGreyOnWhite);
constexpr auto theWhiteOnBlack = HighContrast(theBlack, theWhite, theGreyOnBlack);
constexpr auto theYellowOnBlack = HighContrast(theBlack, theYellow, theOliveOnBlack);

constexpr auto theColours = std::to_array<Colours>({
    {u"dark", theDarkShades, 0xFF8A8A8E},
    {u"black-on-white", theBlackOnWhite, theGreyOnWhite},
    {u"white-on-black", theWhiteOnBlack, theGreyOnBlack},
    {u"yellow-on-black", theYellowOnBlack, theOliveOnBlack},
});

void Take(const Colours &aColours) {
    QPalette palette;
    for (const Shade &shade : aColours.Shades) palette.setColor(shade.Role, shade.Colour);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, aColours.DisabledText);
    QApplication::setStyle(QStringLiteral("Fusion"));  // other styles may have colours of their own
    QApplication::setPalette(palette);
}

}  // namespace

void PrepareApplication() {
    QApplication::setApplicationName(QStringLiteral("Norvik"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/Norvik.svg")));
    QLocale::setDefault(QLocale(QLocale::Russian, QLocale::Russia));
    auto *translator = new QTranslator(qApp);
    if (translator->load(QStringLiteral("qtbase_ru"),
                         QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QApplication::installTranslator(translator);
}

bool TakeColours(QStringView aName) {
    for (const Colours &colours : theColours) {
        if (aName != QStringView(colours.Name)) continue;
        Take(colours);
        return true;
    }
    return false;
}

bool OpenRecords(const QString &aDatabase, Vk_Records::NewDatabase aNew) {
    for (;;) {
        try {
            Vk_Records::OpenDatabase(aDatabase, aNew);
            return true;
        } catch (const Vk_DocQuery::Failure &failure) {
            QMessageBox box(
                QMessageBox::Critical, QStringLiteral("Норвик"),
                QStringLiteral("Не удалось открыть базу данных.\n\n") + failure.Description());
            box.setTextFormat(Qt::PlainText);
            box.addButton(QStringLiteral("Повторить"), QMessageBox::AcceptRole);
            auto *leave = box.addButton(QStringLiteral("Выход"), QMessageBox::RejectRole);
            box.setEscapeButton(leave);
            box.exec();
            if (box.clickedButton() == leave) return false;
        }
    }
}
