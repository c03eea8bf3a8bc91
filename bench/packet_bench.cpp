// Measures building the packet of a basic configuration. The diagnostic lines go to /dev/null, and
// writing them is part of the time. The peer only writes the same lines.

#include "packet_bench.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "contest.h"
#include "growth.h"
#include "results.h"
#include "settings/config_details.h"
#include "silence.h"
#include "testing/counted_memory.h"
#include "util/output.h"
#include "wireless/wnpa_generator.h"

namespace {

constexpr std::size_t UsualSsid = 20;
/// The most allocations per packet.
constexpr double AllocationBar = 8;

/// A generator for a network whose SSID has `ssidSize` characters.
class Building {
 public:
  explicit Building(std::size_t ssidSize) {
    m_Settings.parseParm(4, {"zvkconfig", "--ssid=" + std::string(ssidSize, 'n'), "--security=WPA",
                             "--passwd=a passphrase of usual size"});
    m_Generator = std::make_unique<wnpaGenerator>(&m_Settings);
  }

  void run() { m_Generator->constructBasic(); }

 private:
  bench::Silence m_Silence;
  configDetails m_Settings;
  std::unique_ptr<wnpaGenerator> m_Generator;
};

/// Collects diagnostic texts instead of writing them.
class Lines : public util::Output {
 public:
  Lines() { util::setOutput(this); }
  ~Lines() override { util::setOutput(nullptr); }
  Lines(const Lines&) = delete;
  Lines& operator=(const Lines&) = delete;

  void answer(std::string_view /*text*/) override {}
  void diagnostic(std::string_view text) override { texts.emplace_back(text); }

  std::vector<std::string> texts;
};

auto writingOf(std::size_t ssidSize) {
  Lines lines;
  Building(ssidSize).run();
  return [texts = lines.texts, silence = std::make_unique<bench::Silence>()] {
    std::ranges::for_each(texts, util::writeDiagnostic);
  };
}

auto buildingOf(std::size_t ssidSize) {
  return [building = std::make_unique<Building>(ssidSize)] {
    building->run();
  };
}

[[maybe_unused]] const bool AreAdded = [] {
  bench::contest("packet building", bench::Ours, {UsualSsid}, buildingOf);
  bench::contest("packet building", "its log lines alone", {UsualSsid}, writingOf);
  bench::growth("packet building, bytes of SSID", 512, buildingOf);
  return true;
}();

}  // namespace

namespace bench {

void addPacketAllocations() {
  // Only the second run is counted: the first may allocate memory that stays in use.
  Building building(UsualSsid);
  building.run();
  const std::size_t before = support::allocations();
  building.run();
  const std::size_t count = support::allocations() - before;
  addRow({"packet building", "-, allocations", std::to_string(count), "",
          static_cast<double>(count), AllocationBar});
}

}  // namespace bench
