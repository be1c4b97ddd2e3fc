// Makes an office in a new database: the invented one, one of files, or one of any size to measure
// with; and writes an office into files:
//   vk_make_office --sample DATABASE
//   vk_make_office --import FOLDER DATABASE
//   vk_make_office --export FOLDER DATABASE
//   vk_make_office [--persons N] [--streams N] [--forms N] DATABASE
#include <cstdio>

#include <QCommandLineParser>
#include <QCoreApplication>

#include <Vk_DocQuery/Failure.h>

#include "ExportOffice.h"
#include "ImportOffice.h"
#include "LargeOffice.h"

namespace {

const QStringList theTasks = {QStringLiteral("sample"), QStringLiteral("import"),
                              QStringLiteral("export")};
const QStringList theSizes = {QStringLiteral("persons"), QStringLiteral("streams"),
                              QStringLiteral("forms")};

[[noreturn]] void Refuse(const QString &aText) {
    std::fprintf(stderr, "%s\n", qUtf8Printable(aText));
    std::exit(1);
}

qsizetype CountOf(const QCommandLineParser &aParser, const QString &aOption) {
    bool isNumber = false;
    const int count = aParser.value(aOption).toInt(&isNumber);
    if (!isNumber || count < 0)
        Refuse(QStringLiteral("--%1: нужно целое число не меньше нуля.").arg(aOption));
    return count;
}

QString Dashed(const QStringList &aOptions) {
    return QStringLiteral("--") + aOptions.join(QStringLiteral(", --"));
}

/// The one thing that is to be done; empty for an office of a size.
QString TaskOf(const QCommandLineParser &aParser) {
    QStringList tasks;
    for (const QString &task : theTasks) {
        if (aParser.isSet(task)) tasks << task;
    }
    if (tasks.size() > 1) Refuse(QStringLiteral("Укажите что-то одно: %1.").arg(Dashed(tasks)));
    for (const QString &size : theSizes) {
        if (aParser.isSet(size) && !tasks.isEmpty())
            Refuse(QStringLiteral("--%1 не бывает вместе с --%2.").arg(size, tasks.constFirst()));
    }
    return tasks.value(0);
}

void AddOptions(QCommandLineParser &rParser) {
    rParser.addHelpOption();
    rParser.addPositionalArgument(QStringLiteral("DATABASE"),
                                  QStringLiteral("адрес базы: sqlite:/папка/office.db или "
                                                 "postgresql://имя:пароль@сервер/база"));
    rParser.addOptions(
        {{QStringLiteral("sample"), QStringLiteral("вымышленные записи для пробы")},
         {QStringLiteral("import"),
          QStringLiteral("записи из файлов CSV или TSV этой папки; если в них есть ошибки, они "
                         "называются все, а база не создается"),
          QStringLiteral("FOLDER")},
         {QStringLiteral("export"),
          QStringLiteral("ничего не создает, а пишет записи базы в файлы CSV этой папки"),
          QStringLiteral("FOLDER")},
         {QStringLiteral("persons"), QStringLiteral("сколько налогоплательщиков"),
          QStringLiteral("N"), QStringLiteral("1000")},
         {QStringLiteral("streams"), QStringLiteral("сколько комплектов отчетности"),
          QStringLiteral("N"), QStringLiteral("1000")},
         {{QStringLiteral("forms"), QStringLiteral("classes")},
          QStringLiteral("сколько отчетных форм"),
          QStringLiteral("N"),
          QStringLiteral("100")}});
}

void Run(const QString &aTask, const QCommandLineParser &aParser, const QString &aAddress) {
    using namespace Vk_Records;
    if (aTask == QStringLiteral("sample")) {
        MakeSampleOffice(aAddress);
    } else if (aTask == QStringLiteral("import")) {
        for (const FileRows &file : ImportOffice(aAddress, aParser.value(aTask)))
            std::printf("%s: %lld\n", qUtf8Printable(file.Name), static_cast<long long>(file.Rows));
    } else if (aTask == QStringLiteral("export")) {
        ExportOffice(aAddress, aParser.value(aTask));
    } else {
        MakeLargeOffice(aAddress, {CountOf(aParser, theSizes[0]), CountOf(aParser, theSizes[1]),
                                   CountOf(aParser, theSizes[2])});
    }
}

}  // namespace

int main(int aCount, char **aArguments) {
    QCoreApplication application(aCount, aArguments);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Создает базу данных: с вымышленными записями для пробы, с записями из "
                       "файлов или заданного размера. Базу, в которой уже есть таблицы, не "
                       "меняет. Или пишет записи базы в файлы."));
    AddOptions(parser);
    parser.process(application);
    if (parser.positionalArguments().size() != 1) parser.showHelp(1);
    try {
        Run(TaskOf(parser), parser, parser.positionalArguments().constFirst());
    } catch (const Vk_DocQuery::Failure &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    return 0;
}
