// Makes an office of any size to measure with:
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
    parser.setApplicationDescription(QStringLiteral("Создает базу данных заданного размера."));
    parser.addHelpOption();
    parser.addPositionalArgument(QStringLiteral("DATABASE"),
                                 QStringLiteral("адрес новой базы, например sqlite:office.db"));
    parser.addOptions({{QStringLiteral("persons"), QStringLiteral("сколько налогоплательщиков"),
                        QStringLiteral("N"), QStringLiteral("1000")},
                       {QStringLiteral("streams"), QStringLiteral("сколько комплектов отчетности"),
                        QStringLiteral("N"), QStringLiteral("1000")},
                       {{QStringLiteral("forms"), QStringLiteral("classes")},
                        QStringLiteral("сколько отчетных форм"),
                        QStringLiteral("N"),
                        QStringLiteral("100")}});
    parser.process(application);
    if (parser.positionalArguments().size() != 1) parser.showHelp(1);
    const Vk_Records::OfficeSize size{CountOf(parser, QStringLiteral("persons")),
                                      CountOf(parser, QStringLiteral("streams")),
                                      CountOf(parser, QStringLiteral("forms"))};
    try {
        Vk_Records::MakeLargeOffice(parser.positionalArguments().constFirst(), size);
    } catch (const Vk_DocQuery::Failure &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
