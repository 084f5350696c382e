#include "host/app/Script.h"

#include <algorithm>

namespace host {

namespace {

// What a word has to be; Count is a number from 0, Rest is the rest of the line, blanks included.
enum class Word { Name, Number, Count, Switch, Rest };

struct Form
{
    const char* verb;
    Verb value;
    QVector<Word> words;
    int needed; // words that may not be left out
    const char* usage;
};

const QVector<Form>& forms()
{
    static const QVector<Form> table = {
        {"show", Verb::Show, {}, 0, "show"},
        {"hide", Verb::Hide, {}, 0, "hide"},
        {"set", Verb::Set, {Word::Name, Word::Rest}, 2, "set NAME VALUE"},
        {"click", Verb::Click, {Word::Name, Word::Number, Word::Number}, 1, "click NAME [X Y]"},
        {"type", Verb::Type, {Word::Name, Word::Rest}, 1, "type NAME [TEXT]"},
        {"tab", Verb::Tab, {}, 0, "tab"},
        {"wheel", Verb::Wheel, {Word::Name, Word::Number}, 2, "wheel NAME STEPS"},
        {"file", Verb::File, {Word::Rest}, 0, "file [PATH]"},
        {"get", Verb::Get, {Word::Name}, 1, "get NAME"},
        {"register", Verb::Register, {Word::Rest}, 1, "register FILE"},
        {"userset", Verb::UserSet, {Word::Rest}, 1, "userset FILE"},
        {"poke", Verb::Poke, {Word::Rest}, 1, "poke FILE"},
        {"frame", Verb::Frame, {Word::Rest}, 1, "frame FILE"},
        {"fault", Verb::Fault, {Word::Name, Word::Switch}, 2, "fault NAME on|off"},
        {"lock", Verb::Lock, {Word::Switch}, 1, "lock on|off"},
        {"stream", Verb::Stream, {Word::Switch}, 1, "stream on|off"},
        {"camera", Verb::Camera, {Word::Name, Word::Count}, 1, "camera KEY [BYTES]"},
        {"reconnect", Verb::Reconnect, {}, 0, "reconnect"},
        {"plugin", Verb::Plugin, {}, 0, "plugin"},
        {"scene", Verb::Scene, {Word::Rest}, 1, "scene chart|ramp|PATH"},
        {"choose", Verb::Choose, {Word::Name, Word::Rest}, 2, "choose MENU ENTRY"},
        {"screenshot", Verb::Screenshot, {Word::Rest}, 1, "screenshot FILE"},
        {"wait", Verb::Wait, {Word::Count}, 1, "wait MILLISECONDS"},
        {"quit", Verb::Quit, {}, 0, "quit"},
    };
    return table;
}

// The words of a line in this form; false when they are not.
bool splitWords(const QString& line, const Form& form, QStringList* words)
{
    QString rest = line.section(' ', 1).trimmed();
    for (const Word word : form.words) {
        if (rest.isEmpty())
            break;
        const QString text = word == Word::Rest ? rest : rest.section(' ', 0, 0);
        rest = rest.mid(text.size()).trimmed();
        bool good = true;
        if (word == Word::Number)
            text.toInt(&good);
        else if (word == Word::Count)
            good = text.toInt(&good) >= 0 && good;
        else if (word == Word::Switch)
            good = text == "on" || text == "off";
        if (!good)
            return false;
        words->append(text);
    }
    const bool positionIsWhole = form.value != Verb::Click || words->size() != 2;
    return rest.isEmpty() && words->size() >= form.needed && positionIsWhole;
}

} // namespace

Script parseScript(const QString& text)
{
    Script script;
    int number = 0;
    for (const QString& raw : text.split('\n')) {
        ++number;
        const QString line = raw.trimmed().replace('\t', ' ');
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        const QString verb = line.section(' ', 0, 0);
        const auto form = std::find_if(forms().begin(), forms().end(),
                                       [&](const Form& candidate) { return verb == candidate.verb; });
        QStringList words;
        if (form == forms().end())
            script.error = QString("there is no command \"%1\"").arg(verb);
        else if (!splitWords(line, *form, &words))
            script.error = QString("this command is written: %1").arg(form->usage);
        if (!script.error.isEmpty()) {
            script.errorLine = number;
            return script;
        }
        script.commands.append({number, form->value, words, line});
    }
    return script;
}

} // namespace host
