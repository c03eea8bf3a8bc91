// The input is the XML of an object-store reply. Only the status "1" may set values, and no list or
// request may exceed its limit.

#include "cert/obj_store_response.h"

#include <array>
#include <string>
#include <vector>

#include "fuzz_target.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string reply = fuzz::textOf(data, size);
  ObjStoreResponse loaded;
  loaded.loadXML(reply.c_str());
  const ObjStoreResponse response = loaded;

  std::array<std::string, 7> values;
  values.fill("#");
  const bool isSuccess = response.getCMCertDefaults(values[0], values[1], values[2], values[3],
                                                    values[4], values[5], values[6]);
  fuzz::require(!isSuccess || response.getCMStatusCode() == 1);
  fuzz::require(isSuccess || values[0] == "#");
  response.getCMCAInfo(values[0], values[1], values[2]);
  response.getStatusMesg();
  response.getCMCertFriendlyName();

  std::vector<std::string> names = {""};
  response.getCMFriendlyNameList(names);
  fuzz::require(isSuccess ? names.size() <= 9 : names.size() == 1);
  std::vector<std::string> commonNames = {""};
  response.getCMCACommonNameList(commonNames);
  fuzz::require(names == commonNames);

  std::array<unsigned char, 64> request{};
  const unsigned int count = response.getCMCertRequestData(request.data(), request.size());
  fuzz::require(count <= request.size() || count == 0xFFFFFFFFU);
  fuzz::require(isSuccess || count == 0);
  return 0;
}
