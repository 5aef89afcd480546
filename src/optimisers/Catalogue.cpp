#include "optimisers/Catalogue.h"

#include "platform/Ini.h"
#include "platform/Registre.h"

namespace tamrix::catalogue {

namespace {

RegValue ValueOf(const Data& d, const Variables& variables) {
  switch (d.kind) {
    case Data::Kind::Text: return RegValue(std::string(d.text));
    case Data::Kind::Number: return RegValue(d.number);
    case Data::Kind::Variable: return variables ? variables(d.number) : RegValue();
  }
  return RegValue();
}

}  // namespace

void WriteRows(std::span<const RegRow> rows, const RegWriter& write, const Variables& variables) {
  for (const RegRow& row : rows)
    write(row.hive, std::string(row.keyPath), std::string(row.valueName), ValueOf(row.data, variables), row.type);
}

void WriteRows(std::span<const ProfileRow> rows, const ProfileWriter& write) {
  for (const ProfileRow& row : rows) write(std::string(row.section), std::string(row.key), std::string(row.value));
}

RegWriter RegistryWriter(Platform& p) {
  return [&p](HKey hive, const std::string& keyPath, const std::string& valueName, const RegValue& data,
              std::uint32_t type) { Registre::WriteRegValue(p, hive, keyPath, valueName, data, type); };
}

ProfileWriter ProfileFileWriter(Platform& p) {
  return [&p](const std::string& section, const std::string& key, const std::string& value) {
    ini::WriteProfileValue(p, section, key, value);
  };
}

}  // namespace tamrix::catalogue
