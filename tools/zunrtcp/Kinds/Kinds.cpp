#include "tools/zunrtcp/Kinds/Kinds.h"

#include <algorithm>

#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

const KindRow* KindTable::Find(ZunInt32 value) const {
  const auto serves = [&](const KindRow* row) { return row->level == level && row->value == value; };
  const auto found = std::ranges::find_if(rows, serves);
  return found == rows.end() ? nullptr : *found;
}

const UnmodelledKind* KindTable::FindUnmodelled(ZunInt32 value) const {
  const auto found = std::ranges::find(unmodelled, value, &UnmodelledKind::value);
  return found == unmodelled.end() ? nullptr : &*found;
}

// The rows that a subpacket passes from level to level, outermost first, and where they end early.
struct Kinds::Path {
  std::vector<const KindRow*> rows;
  const KindTable* rowless = nullptr;  // has no row for the next value; null when the last row is of the whole kind
  ZunInt32 value = 0;                  // that next value

  const KindRow* KindsRow() const { return rowless == nullptr ? rows.back() : nullptr; }
  const UnmodelledKind* Unmodelled() const { return rowless == nullptr ? nullptr : rowless->FindUnmodelled(value); }
};

template <class Subpacket>
Kinds::Path Kinds::PathOf(const Subpacket& subpacket) const {
  Path path;
  for (const KindTable& table : tables_) {
    const std::optional<ZunInt32> value = table.level->ValueOf(subpacket);
    if (!value) continue;
    const KindRow* row = table.Find(*value);
    if (row == nullptr) return {path.rows, &table, *value};
    path.rows.push_back(row);
  }
  return path;
}

const KindRow* Kinds::RowOfBytes(const SubpacketView& subpacket) const { return PathOf(subpacket).KindsRow(); }

std::string Kinds::NameOf(const SubpacketView& subpacket) const {
  const Path path = PathOf(subpacket);
  if (path.rowless == nullptr) return path.rows.back()->NameIn(subpacket.dialect);
  std::string number = path.rowless->level->number_words(subpacket);
  const UnmodelledKind* unmodelled = path.Unmodelled();
  if (unmodelled == nullptr || unmodelled->name == nullptr) return number;
  if (unmodelled->describe != nullptr) return unmodelled->name;
  return std::string(unmodelled->name) + " (" + number + ")";
}

std::string Kinds::CountWords(const SubpacketView& subpacket) const {
  const Path path = PathOf(subpacket);
  const unsigned count = subpacket.count();
  if (!path.rows.empty() && path.rows.front()->counted != nullptr) {
    return Counted(count, path.rows.front()->counted);
  }
  if (path.rows.size() > 1) return "FMT " + std::to_string(count);
  const UnmodelledKind* unmodelled = path.Unmodelled();
  if (unmodelled != nullptr && unmodelled->describe != nullptr) {
    return path.rows.empty() ? "" : "FMT " + std::to_string(count);
  }
  const bool is_format = path.rows.size() == 1 && path.rowless != nullptr;
  return is_format ? "" : "subtype " + std::to_string(count);
}

std::string Kinds::NameAndCount(const SubpacketView& subpacket) const {
  const std::string count = CountWords(subpacket);
  return NameOf(subpacket) + (count.empty() ? "" : ", " + count);
}

std::string Kinds::RemarkOn(const SubpacketView& subpacket) const {
  const Path path = PathOf(subpacket);
  if (const KindRow* row = path.KindsRow()) return row->remark == nullptr ? "" : row->remark(subpacket);
  const UnmodelledKind* unmodelled = path.Unmodelled();
  return unmodelled == nullptr || unmodelled->remark == nullptr ? "" : unmodelled->remark;
}

void Kinds::Describe(ObjectView object, const SubpacketView& bytes, Description* description) const {
  const Path path = PathOf(object);
  // What the library models and no row knows is not looked into: its bytes are all that is certain.
  if (path.rowless != nullptr && !path.rowless->level->is_unknown(path.value)) {
    return description->AddBytes("data", "data", zun::rtcp::octets_of(bytes.body()));
  }
  for (const KindRow* row : path.rows) row->describe(object, description);
  if (path.rowless != nullptr) description->AddBytes("data", "data", path.rowless->level->unknown_data(object));
}

std::optional<FormFault> Kinds::DescribeRegisteredForm(const std::optional<ObjectView>& object,
                                                       const SubpacketView& bytes, std::size_t* packets_left,
                                                       Description* description) const {
  const UnmodelledKind* form = PathOf(bytes).Unmodelled();
  if (form == nullptr || form->describe == nullptr) return std::nullopt;
  return form->describe({bytes, object, packets_left}, description);
}

std::optional<std::string> Kinds::WriteRegisteredForm(const SubpacketView& bytes) const {
  const UnmodelledKind* form = PathOf(bytes).Unmodelled();
  return form == nullptr || form->write == nullptr ? std::nullopt : form->write(bytes);
}

void Kinds::Apply(const SubpacketView& received, Rewrite* rewrite) const {
  const Path path = PathOf(received);
  const KindRow* row = path.KindsRow();
  if (row != nullptr && row->rewrite != nullptr) row->rewrite(rewrite);
  const UnmodelledKind* form = path.Unmodelled();
  if (form != nullptr && form->rewrite != nullptr) form->rewrite(rewrite);
  rewrite->FillLastWord();
}

std::optional<Rule> Kinds::WhyRefused(const SubpacketView& subpacket) const {
  const KindRow* row = RowOfBytes(subpacket);
  return row == nullptr || row->why_refused == nullptr ? std::nullopt : row->why_refused(subpacket);
}

std::optional<Rule> Kinds::WhyUnwritten(const SubpacketView& subpacket) const {
  const KindRow* row = RowOfBytes(subpacket);
  return row == nullptr || row->why_unwritten == nullptr ? std::nullopt : row->why_unwritten(subpacket);
}

const Kinds& AllKinds() {
  static const Kinds kinds(subpacket_kinds, rtpfb_kinds, psfb_kinds, afb_kinds);
  return kinds;
}

}  // namespace zunrtcp
