// Scripts of the viewer.
#include "host/app/Script.h"
#include "FuzzInput.h"

using fuzz::require;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const host::Script script = host::parseScript(text);
    require(script.error.isEmpty() == (script.errorLine == 0), "an error has a line");
    int line = 0;
    for (const host::ScriptCommand& command : script.commands) {
        require(command.line > line, "commands stand in the order of their lines");
        require(!command.text.isEmpty(), "a command has a text");
        line = command.line;
    }
    require(script.error.isEmpty() || script.errorLine > line, "the first wrong line ends the script");
    return 0;
}
