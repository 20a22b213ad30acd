#include "simulatorprogram.h"

using Orvane::CommandLine::Program;

const Program& simulatorProgram()
{
    static const Program program{
        "orvane-console-simulator",
        "play the physical console",
        {"Shows what the library sends to 127.0.0.1 port 35555 and reports keys, T-Bar positions and locks "
         "to "
         "port 35556.",
         "Commands come from standard input or a script; the command \"help\" lists them. What the console "
         "does is printed on standard output."},
        {{"check", "file", "List every problem of this keyboard file, one a line, then end."},
         {"translation", "file", "Check the labels in the language of this .qm file too."},
         {"describe", "file", "Print a page for the operator of this keyboard file (Markdown), then end."},
         {"keyboard", "file", "Lay the picture out from this keyboard file."},
         {"example", nullptr, "Lay the picture out from the keyboard that is installed with the simulator."},
         {"script", "file", "Run the commands of this file, then end."},
         {"capture", "file", "Write every datagram of both directions to this pcap file."},
         {"replay", "file", "Report what this pcap file has, compare the console with it, then end."},
         {"speed", "n", "Replay so many times as fast (1).", "1"},
         {"step", nullptr, "Replay one report for each line of standard input."},
         {"json", nullptr, "Print one JSON object a line."},
         {"no-color", nullptr, "Draw the picture without colours."},
         {"width", "columns", "Draw the picture this many columns wide (100).", "100"},
         {"quiet", nullptr, "Print failures and what is asked for only, not the traffic."},
         {"keep-going", nullptr, "Go on with a script after a failure."},
         {"tolerate-unreadable", nullptr, "Unreadable datagrams are no failure."},
         {"window", nullptr, "Show the console in a window, which stays open."},
         {"size", "WIDTHxHEIGHT", "Size of the window (1280x800).", "1280x800"},
         {"half", "left|right", "Put the window on this half of the display."}},
        {},
        {{"0", "All went well."},
         {"1",
          "An expectation failed, the console differs from a capture, a line was no command, or an "
          "unreadable datagram came; or the checked file has problems."},
         {"2", "It could not start, or not read the file. Standard error says why."}},
        {{"orvane-console-simulator --keyboard keyboard.json --window", "The console in a window."},
         {"orvane-console-simulator --check keyboard.json", "What is wrong or odd in a keyboard file."},
         {"orvane-console-simulator --replay fault.pcap --speed 10",
          "Does a host still do what was captured?"},
         {"orvane-console-simulator --script session --quiet", "A session that prints its failures only."}},
        {"orvane-console-host(1)"}};
    return program;
}
