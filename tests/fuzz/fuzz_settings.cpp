// Settings files: any bytes give a designed result, and a loaded record has
// every string field terminated inside its array.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "settings/settings_record.h"

namespace {

void Check(const uint8_t* data, size_t size) {
  std::unique_ptr<AppSettings> record(new AppSettings());
  const SettingsLoadResult result = ParseSettingsFile(data, size, *record);
  if (result == SettingsLoadResult::kLoaded) {
    const auto* base = reinterpret_cast<const uint8_t*>(record.get());
    for (size_t i = 0; i < kSettingsStringFieldCount; ++i) {
      const uint8_t* units = base + kSettingsStringFields[i].offset;  // may be odd: read by copy
      bool terminated = false;
      for (size_t unit = 0; unit < kSettingsStringFields[i].capacity; ++unit) {
        SettingsChar value;
        std::memcpy(&value, units + unit * sizeof(value), sizeof(value));
        terminated |= value == 0;
      }
      if (!terminated) std::abort();
    }
  } else if (result == SettingsLoadResult::kFileNotFound) {
    std::abort();  // bytes were given
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Check(data, size);
  // Mutations almost never keep the checksum right; the same bytes with the
  // checksum the payload needs reach the checks of a loaded record.
  if (size >= kSettingsFileSize) {
    std::vector<uint8_t> fixed(data, data + size);
    const uint32_t checksum = SettingsChecksum(fixed.data() + kSettingsHeaderSize);
    std::memcpy(fixed.data() + 12, &checksum, sizeof(checksum));
    Check(fixed.data(), fixed.size());
  }
  return 0;
}
