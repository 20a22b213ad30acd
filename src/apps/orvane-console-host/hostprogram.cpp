#include "hostprogram.h"

namespace Orvane::ConsoleHost {

const CommandLine::Program& hostProgram()
{
    static const CommandLine::Program program{
        "orvane-console-host",
        "work a processor in memory from its physical control console",
        {"The reference host: an application as an integrator writes it around the library, with a model "
         "that "
         "is in memory only.",
         "Commands are JSON objects, one a line of standard input; each is answered on standard output. The "
         "command \"help\" lists them. The log goes to standard error."},
        {{"keyboard", "file", "Which key of the console does what (JSON). Needed, or --example."},
         {"show", "file", "The devices, screens and presets (JSON). Without it there is no device."},
         {"example", nullptr, "Take the keyboard and the show that are installed with the host."},
         {"console", nullptr, "Show the on-screen console in a window of its own."},
         {"half", "left|right", "Put the window on this half of the display."},
         {"headless", nullptr, "Run without a window; no display is needed."},
         {"events", nullptr, "Write every event as a line of JSON on standard output."},
         {"quit-at-end", nullptr, "Quit when standard input ends, rather than run on."},
         {"capture", "file", "Write every datagram from and to the console to this pcap file."},
         {"shadow", nullptr, "Note what the console is told, to compare it with what its keys are to show."},
         {"verbose", nullptr, "Log what each key does, not only what went wrong."}},
        {},
        {{"0", "It was ended: by command, by its window, or by an interrupt or a termination request."},
         {"1", "It could not start: a file is faulty, UDP port 35556 is in use, or there is no display."},
         {"2", "The command line was wrong."}},
        {{"orvane-console-host --keyboard keyboard.json --show show.json", "The host in a window."},
         {"orvane-console-host --keyboard keyboard.json --show show.json --headless --events",
          "The host for a program that reads what happens."}},
        {"orvane-console-simulator(1)", "orvane-model-check(1)"}};
    return program;
}

} // namespace Orvane::ConsoleHost
