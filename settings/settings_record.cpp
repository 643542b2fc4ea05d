#include "settings/settings_record.h"

#include <cstring>

#define TAVRO_STRING_FIELD(name) {offsetof(AppSettings, name), sizeof(AppSettings::name) / sizeof(SettingsChar)}
#define TAVRO_STRING_ROWS(name, row) {offsetof(AppSettings, name) + (row) * sizeof(AppSettings::name[0]), \
                                      sizeof(AppSettings::name[0]) / sizeof(SettingsChar)}
#define TAVRO_TEN_ROWS(name)                                                                                    \
  TAVRO_STRING_ROWS(name, 0), TAVRO_STRING_ROWS(name, 1), TAVRO_STRING_ROWS(name, 2), TAVRO_STRING_ROWS(name, 3), \
      TAVRO_STRING_ROWS(name, 4), TAVRO_STRING_ROWS(name, 5), TAVRO_STRING_ROWS(name, 6),                        \
      TAVRO_STRING_ROWS(name, 7), TAVRO_STRING_ROWS(name, 8), TAVRO_STRING_ROWS(name, 9)

const SettingsStringField kSettingsStringFields[] = {
    TAVRO_STRING_FIELD(fontName),       TAVRO_STRING_FIELD(lastFilePath),   TAVRO_TEN_ROWS(findHistory),
    TAVRO_TEN_ROWS(replaceHistory),     TAVRO_TEN_ROWS(regexPatternHistory), TAVRO_TEN_ROWS(regexReplaceHistory),
    TAVRO_TEN_ROWS(recentFiles),        TAVRO_STRING_FIELD(accountId),      TAVRO_STRING_FIELD(apiKey),
    TAVRO_STRING_FIELD(modelName),      TAVRO_STRING_FIELD(systemPrompt),   TAVRO_STRING_FIELD(customEndpoint),
};
const size_t kSettingsStringFieldCount = sizeof(kSettingsStringFields) / sizeof(kSettingsStringFields[0]);

#undef TAVRO_TEN_ROWS
#undef TAVRO_STRING_ROWS
#undef TAVRO_STRING_FIELD

uint32_t SettingsChecksum(const void* payload) {
  const auto* bytes = static_cast<const uint8_t*>(payload);
  uint32_t hash = 0x811C9DC5u;
  for (uint32_t i = 0; i < kSettingsPayloadSize; ++i) {
    hash ^= bytes[i];
    hash *= 16777619u;
  }
  return hash;
}

SettingsLoadResult ParseSettingsFile(const uint8_t* bytes, size_t size, AppSettings& record) {
  SettingsFileHeader header = {};
  if (size < sizeof(header)) return SettingsLoadResult::kInvalidHeader;
  std::memcpy(&header, bytes, sizeof(header));
  if (std::memcmp(header.magic, kSettingsMagic, sizeof(header.magic)) != 0 || header.version != kSettingsVersion ||
      header.payloadSize != kSettingsPayloadSize)
    return SettingsLoadResult::kInvalidHeader;
  if (size - sizeof(header) < kSettingsPayloadSize) return SettingsLoadResult::kChecksumMismatch;
  std::memcpy(&record, bytes + sizeof(header), kSettingsPayloadSize);
  if (SettingsChecksum(&record) != header.checksum) return SettingsLoadResult::kChecksumMismatch;
  // A field without a terminator would let its readers run into the next
  // field; a well-formed field keeps every unit, the ones after its
  // terminator included.
  // Fields of the packed record may stand at odd offsets, so units are
  // read and written by copy.
  auto* base = reinterpret_cast<uint8_t*>(&record);
  for (size_t i = 0; i < kSettingsStringFieldCount; ++i) {
    const SettingsStringField& field = kSettingsStringFields[i];
    uint8_t* units = base + field.offset;
    bool terminated = false;
    for (size_t unit = 0; unit < field.capacity && !terminated; ++unit) {
      SettingsChar value;
      std::memcpy(&value, units + unit * sizeof(SettingsChar), sizeof(value));
      terminated = value == 0;
    }
    if (!terminated) std::memset(units + (field.capacity - 1) * sizeof(SettingsChar), 0, sizeof(SettingsChar));
  }
  return SettingsLoadResult::kLoaded;
}
