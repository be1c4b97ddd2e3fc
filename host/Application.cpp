#include "Application.h"

#include <array>

#include <QApplication>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPalette>
#include <QPushButton>
#include <QTranslator>

#include <Vk_DocQuery/Failure.h>
#include <Vk_Records/Database.h>

namespace {

struct Shade {
    QPalette::ColorRole Role;
    QRgb Colour;
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
constexpr QRgb theDisabledText = 0xFF8A8A8E;

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

void TakeDarkColours() {
    QPalette palette;
    for (const Shade &shade : theDarkShades) palette.setColor(shade.Role, shade.Colour);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, theDisabledText);
    QApplication::setStyle(QStringLiteral("Fusion"));  // other styles may have colours of their own
    QApplication::setPalette(palette);
}

bool OpenRecords(const QString &aDatabase) {
    for (;;) {
        try {
            Vk_Records::OpenDatabase(aDatabase);
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
