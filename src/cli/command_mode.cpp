#include "cli/command_mode.h"

#include <algorithm>
#include <array>

namespace {

using Input = CommandMode::Input;
using Worker = CommandMode::Worker;

constexpr CommandMode generated(std::string_view name, Input input,
                                int (wnpaGenerator::*operation)(), bool retriesBare) {
  return {name, input, Worker::Generator, operation, retriesBare};
}

constexpr CommandMode certificates(std::string_view name) {
  return {name, Input::Options, Worker::Certificates, nullptr, false};
}

constexpr std::array CommandModes = {
    CommandMode{"-h", Input::DevicePath, Worker::Help, nullptr, false},
    generated("-r", Input::DevicePath, &wnpaGenerator::reset, false),
    generated("-c", Input::Options, &wnpaGenerator::configBasic, true),
    generated("-ca", Input::Options, &wnpaGenerator::configAdvanced, true),
    generated("-ip", Input::DevicePath, &wnpaGenerator::getIP, true),
    generated("-t", Input::DevicePath, &wnpaGenerator::getTroubleCode, true),
    generated("-a", Input::DevicePath, &wnpaGenerator::getAdapterDescriptor, false),
    generated("-s", Input::DevicePath, &wnpaGenerator::getSSID, true),
    generated("-802s", Input::DevicePath, &wnpaGenerator::get802AuthStatus, true),
    generated("-cer", Input::Options, &wnpaGenerator::getCertSettings, true),
    CommandMode{"-npa", Input::NpaFile, Worker::RawSender, nullptr, false},
    certificates("-icer"),
    certificates("-rcerdefs"),
    certificates("-csr"),
};

constexpr CommandMode DefaultRun = {{}, Input::DevicePath, Worker::DefaultRun, nullptr, false};

}  // namespace

const CommandMode& commandMode(std::string_view name) {
  const auto* const found = std::ranges::find(CommandModes, name, &CommandMode::name);
  return found == CommandModes.end() ? DefaultRun : *found;
}

std::span<const CommandMode> commandModes() {
  return CommandModes;
}
