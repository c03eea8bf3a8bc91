#pragma once

#include <string>

/// Asks for the network's password on standard output and reads a line of standard input, with the
/// terminal's echo off when it is a terminal. Returns the line without its end; end of input ends
/// it as well. The echo comes back on every way out, also when a signal ends the program.
std::string promptForPassword();
