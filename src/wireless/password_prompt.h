#pragma once

#include <string>

/// Asks for the network's password on standard output and reads a line from standard input. Returns
/// the line without its line end; the end of the input also ends the line. If standard input is a
/// terminal, its echo is off during the input. The echo is switched on again when the function
/// returns or throws, and before SIGINT, SIGTERM, SIGHUP, SIGQUIT or SIGTSTP ends or stops the
/// program.
std::string promptForPassword();
