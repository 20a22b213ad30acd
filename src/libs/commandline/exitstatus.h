#pragma once

namespace Orvane::CommandLine {

/// How a program ends. What it means to each is told on its manual page.
enum ExitStatus {
    ExitOk = 0,
    ExitFailed = 1,
    ExitRefused = 2, ///< always the status of a wrong command line
};

} // namespace Orvane::CommandLine
