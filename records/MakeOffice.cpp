// Makes an office in a new database, the invented one or one of any size to measure with:
//   vk_make_office --sample DATABASE
//   vk_make_office [--persons N] [--streams N] [--forms N] DATABASE
#include <cstdio>

#include <QCommandLineParser>
#include <QCoreApplication>

#include <Vk_DocQuery/Failure.h>

#include "LargeOffice.h"

namespace {

qsizetype CountOf(const QCommandLineParser &aParser, const QString &aOption) {
    bool isNumber = false;
    const int count = aParser.value(aOption).toInt(&isNumber);
    if (!isNumber || count < 0) {
        std::fprintf(stderr, "--%s: нужно целое число не меньше нуля.\n", qUtf8Printable(aOption));
        std::exit(1);
    }
    return count;
}

}  // namespace

int main(int aCount, char **aArguments) {
    QCoreApplication application(aCount, aArguments);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Создает базу данных: с вымышленными записями для пробы или заданного "
                       "размера. Базу, в которой уже есть таблицы, не меняет."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("DATABASE"),
                                 QStringLiteral("адрес новой базы: sqlite:/папка/office.db или "
                                                "postgresql://имя:пароль@сервер/база"));
    parser.addOptions({{QStringLiteral("sample"),
                        QStringLiteral("вымышленные записи для пробы; размеры не действуют")},
                       {QStringLiteral("persons"), QStringLiteral("сколько налогоплательщиков"),
                        QStringLiteral("N"), QStringLiteral("1000")},
                       {QStringLiteral("streams"), QStringLiteral("сколько комплектов отчетности"),
                        QStringLiteral("N"), QStringLiteral("1000")},
                       {{QStringLiteral("forms"), QStringLiteral("classes")},
                        QStringLiteral("сколько отчетных форм"),
                        QStringLiteral("N"),
                        QStringLiteral("100")}});
    parser.process(application);
    if (parser.positionalArguments().size() != 1) parser.showHelp(1);
    const QString address = parser.positionalArguments().constFirst();
    const Vk_Records::OfficeSize size{CountOf(parser, QStringLiteral("persons")),
                                      CountOf(parser, QStringLiteral("streams")),
                                      CountOf(parser, QStringLiteral("forms"))};
    try {
        if (parser.isSet(QStringLiteral("sample")))
            Vk_Records::MakeSampleOffice(address);
        else
            Vk_Records::MakeLargeOffice(address, size);
    } catch (const Vk_DocQuery::Failure &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
