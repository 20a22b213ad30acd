#include "modelcheckprogram.h"

using Orvane::CommandLine::Program;

const Program& modelCheckProgram()
{
    static const Program program{
        "orvane-model-check",
        "check the model in memory against the rules for models",
        {"Works the model as an operator does, with a show of yours, and prints every rule that it breaks. "
         "No "
         "console is needed. The show file is not written."},
        {},
        {{"SHOW", "The show file to begin with (JSON)."}},
        {{"0", "The model keeps the rules."},
         {"1", "It breaks one."},
         {"2", "There is no model to check. Standard output says why."}},
        {{"orvane-model-check show.json", "Checks the model with the devices of a show."}},
        {"orvane-console-host(1)"}};
    return program;
}
