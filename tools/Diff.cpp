#include "tools/Diff.h"

#include <cstdlib>

#include <QJsonDocument>
#include <QJsonObject>

#include "tools/Files.h"
#include "tools/Settings.h"
#include "tools/TableIo.h"

namespace tools {

using orlune::kLutEntries;
using orlune::LutImage;

namespace {

struct EntryDifference
{
    int count = 0;
    int largest = 0;
    int at = 0; // the first entry with the largest difference
};

EntryDifference compareEntries(const LutImage& a, const LutImage& b)
{
    EntryDifference found;
    for (int i = 0; i < kLutEntries; ++i) {
        const int difference = std::abs(a.Entries[i] - b.Entries[i]);
        found.count += difference != 0;
        if (difference > found.largest) {
            found.largest = difference;
            found.at = i;
        }
    }
    return found;
}

// One line for each difference.
QStringList compareSettings(const LutImage& a, const LutImage& b, const QString& nameA, const QString& nameB)
{
    const auto trailerA = orlune::ReadTrailer(a);
    const auto trailerB = orlune::ReadTrailer(b);
    if (!trailerA && !trailerB)
        return {};
    if (!trailerA || !trailerB)
        return {QString("settings: only %1 has them").arg(quoted(trailerA ? nameA : nameB))};
    QStringList lines;
    if (trailerA->StandardName != trailerB->StandardName)
        lines += QString("standard curve: %1 and %2").arg(standardName(*trailerA), standardName(*trailerB));
    for (const SettingRow& row : kSettingRows) {
        const int valueA = trailerA->Settings.*row.member;
        const int valueB = trailerB->Settings.*row.member;
        if (valueA != valueB)
            lines += QString("%1: %2 and %3").arg(row.label).arg(valueA).arg(valueB);
    }
    return lines;
}

QString words(const EntryDifference& entries, const LutImage& a, const LutImage& b,
              const QStringList& settings)
{
    QString text;
    if (entries.count > 0)
        text = QString("entries: %1 of %2 differ, by up to %3, first at entry %4: %5 and %6\n")
                   .arg(entries.count)
                   .arg(kLutEntries)
                   .arg(entries.largest)
                   .arg(entries.at)
                   .arg(a.Entries[entries.at])
                   .arg(b.Entries[entries.at]);
    for (const QString& line : settings)
        text += line + '\n';
    return text;
}

QByteArray json(const EntryDifference& entries, const LutImage& a, const LutImage& b, bool settingsDiffer)
{
    QJsonObject object{
        {"differingEntries", entries.count},
        {"largestDifference", entries.largest},
        {"largestAt", entries.count > 0 ? QJsonValue(entries.at) : QJsonValue::Null},
        {"settingsDiffer", settingsDiffer},
        {"settings", QJsonObject{{"a", settingsAsJson(a)}, {"b", settingsAsJson(b)}}},
    };
    return QJsonDocument(object).toJson();
}

ExitStatus compare(const QStringList& arguments)
{
    QCommandLineParser parser;
    const QCommandLineOption asJson = jsonOption(), from = fromOption();
    const QCommandLineOption entriesOnly("entries", "Compares the entries and not the settings.");
    parser.addOptions({asJson, from, entriesOnly});
    parseArguments(parser, kDiffCommand, arguments);
    const QString nameA = parser.positionalArguments()[0];
    const QString nameB = parser.positionalArguments()[1];
    if (isStream(nameA) && isStream(nameB))
        throw Failure{kTrouble, "The standard input holds one table only."};
    const auto format = askedFormat(parser, from);
    const LutImage a = readTable(nameA, format).image;
    const LutImage b = readTable(nameB, format).image;
    const EntryDifference entries = compareEntries(a, b);
    const QStringList settings =
        parser.isSet(entriesOnly) ? QStringList() : compareSettings(a, b, nameA, nameB);
    print(parser.isSet(asJson) ? json(entries, a, b, !settings.isEmpty())
                               : words(entries, a, b, settings).toLocal8Bit());
    return entries.count == 0 && settings.isEmpty() ? kGood : kDifferent;
}

// As diff does, it keeps 1 for a difference.
ExitStatus run(const QStringList& arguments)
{
    try {
        return compare(arguments);
    } catch (const Failure& failure) {
        throw Failure{kTrouble, failure.sentence};
    }
}

} // namespace

const Command kDiffCommand = {
    "diff",
    "A B",
    2,
    2,
    "Tells where two tables differ, in entries and settings.",
    "A and B are .lut, .bin, .csv or .cube files; one may be - for the standard input.\n"
    "When they are the same nothing is printed, except as JSON.\n\n"
    "Exit status: 0 when the tables are the same, 1 when they differ, 2 for trouble.",
    run};

} // namespace tools
