#include "Zun/Rtp/Cpp/Print.h"
#include "tools/zunrtcp/Kinds/Reports/Rows.h"
#include "tools/zunrtcp/Text.h"

namespace zunrtcp {

using namespace zun::rtcp;

namespace {

constexpr unsigned kMaxItemType = 15;
constexpr std::size_t kItemHeaderSize = 2;  // type and length

void DescribeItem(View<SdesItem> item, Description* description) {
  description->AddValue("type", item.type());
  description->AddValue("name", words::SdesItemName(item.type()));
  if (const auto priv = item.priv()) {
    description->AddTextValue("prefix", priv->prefix);
    description->AddTextValue("text", priv->value);
  } else {
    description->AddTextValue("text", item.text());
  }
  description->AddWords(words::SdesItemWords(item));
}

void DescribeChunk(View<SdesChunk> chunk, Description* description) {
  description->AddSource("source", "chunk of", chunk.ssrc());
  description->AddList("items");
  for (const auto item : chunk.items()) DescribeItem(item, &description->AddItem("items"));
}

void DescribeSdes(View<Sdes> sdes, Description* description) {
  description->AddList("chunks");
  for (const auto chunk : sdes.chunks()) DescribeChunk(chunk, &description->AddItem("chunks"));
}

// Copies chunk after chunk: an SSRC, items of (type, length, text) up to a type of 0, and zeros to a multiple of 4.
class ChunkCopier {
 public:
  explicit ChunkCopier(Rewrite* rewrite) : in_(rewrite->bytes), rules_(&rewrite->rules) {
    written_ = in_.Take(kHeaderSize);
  }

  void Copy() {
    const std::size_t begin = in_.at();
    const std::size_t written_begin = written_.size();
    written_ += in_.Take(kSourceSize);
    // The first item is read as one even when its type is 0.
    bool skipped_empty = false;
    do {
      skipped_empty = CopyItem() || skipped_empty;
    } while (in_.Next() != 0);
    SkipEnd(begin);
    written_ += '\0';
    written_.append(PaddingAfter(written_.size() - written_begin), '\0');
    if (skipped_empty && written_.size() - written_begin != in_.at() - begin) rules_->insert(Rule::SdesItemSkipped);
  }

  bool AtEnd() const { return in_.AtEnd(); }
  const std::string& written() const { return written_; }

 private:
  // True for an empty item of type 0: alone it is the end of a chunk without items, of which nothing is lost.
  bool CopyItem() {
    OctetCursor header = in_;
    const unsigned type = header.U8();
    const std::size_t text_size = header.U8();
    const std::string_view item = in_.Take(kItemHeaderSize + text_size);
    if (type == 0 && text_size == 0) return true;
    if (type == 0 || type > kMaxItemType) {
      rules_->insert(Rule::SdesItemSkipped);
    } else {
      written_ += item;
    }
    return false;
  }

  // The 0 that ends the chunk that begins at `begin`, and its padding.
  void SkipEnd(std::size_t begin) {
    in_.Take(1);
    const std::string_view padding = in_.Take(PaddingAfter(in_.at() - begin));
    if (padding.find_first_not_of('\0') != std::string_view::npos) rules_->insert(Rule::SdesPadding);
  }

  OctetCursor in_;
  std::string written_;
  std::set<Rule>* rules_;
};

void RewriteSdes(Rewrite* rewrite) {
  const unsigned chunks = rewrite->count();
  if (chunks == 0) return;
  ChunkCopier copier(rewrite);
  for (unsigned i = 0; i < chunks; ++i) copier.Copy();
  if (!copier.AtEnd()) throw OctetsEnd();
  rewrite->bytes = copier.written();
  rewrite->PutLength(rewrite->bytes.size());
}

}  // namespace

constinit const KindRow sdes_row = RowOf<Listed<subpacket_level, ZUN_RTCPSUBPACKET_TYPE_SDES>, DescribeSdes>({
    .name = "SDES",
    .counted = "chunk",
    .rewrite = RewriteSdes,
});

}  // namespace zunrtcp
