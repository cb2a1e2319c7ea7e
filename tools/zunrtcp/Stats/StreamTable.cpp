#include "tools/zunrtcp/Stats/StreamTable.h"

#include <algorithm>
#include <tuple>

namespace zunrtcp {

StreamTable::Hosts StreamTable::HostsOf(const Path& path) {
  Hosts hosts{path.from.address, path.to.address};
  if (hosts.second < hosts.first) std::swap(hosts.first, hosts.second);
  return hosts;
}

Participant* StreamTable::Find(std::uint32_t ssrc, const Path& path) {
  const auto key = std::pair(ssrc, HostsOf(path));
  const auto found = participants_.find(key);
  if (found != participants_.end()) return &found->second;
  if (participants_.size() == kMostParticipants) {
    full_ = true;
    return nullptr;
  }
  return &participants_[key];
}

Stream* StreamTable::Make(std::optional<std::uint32_t> ssrc, const Path& path) {
  if (streams_.size() == kMostStreams) {
    full_ = true;
    return nullptr;
  }
  streams_.push_back(std::make_unique<Stream>(ssrc, path));
  return streams_.back().get();
}

// What was said of the other side's only stream, when its SSRC was not known yet.
Stream* StreamTable::TakeUnnamed(const Path& path) {
  Participant* unnamed = Find(0, path);
  if (unnamed == nullptr) return nullptr;
  const auto found =
      std::ranges::find_if(unnamed->streams, [&](const Stream* s) { return !s->sent && s->path == path; });
  if (found == unnamed->streams.end()) return nullptr;
  Stream* stream = *found;
  unnamed->streams.erase(found);
  return stream;
}

Stream* StreamTable::New(std::uint32_t ssrc, const Path& path, std::vector<Stream*>* streams) {
  Stream* stream = ssrc == 0 ? nullptr : TakeUnnamed(path);
  if (stream == nullptr) stream = Make(ssrc, path);
  if (stream == nullptr) return nullptr;
  stream->ssrc = ssrc;
  streams->push_back(stream);
  return stream;
}

Stream* StreamTable::Sent(std::uint32_t ssrc, const Path& path) {
  Participant* participant = Find(ssrc, path);
  if (participant == nullptr) return nullptr;
  std::vector<Stream*>& streams = participant->streams;
  auto found = std::ranges::find_if(streams, [&](const Stream* s) { return s->sent && s->path == path; });
  if (found != streams.end()) return *found;
  // One that was only spoken of so far.
  found = std::ranges::find_if(streams, [](const Stream* s) { return !s->sent; });
  Stream* stream = found != streams.end() ? *found : New(ssrc, path, &streams);
  if (stream == nullptr) return nullptr;
  stream->sent = true;
  stream->path = path;
  return stream;
}

Stream* StreamTable::About(std::uint32_t ssrc, const Path& path) {
  const Path sent_on = path.Reversed();
  if (ssrc == 0) {
    if (Stream* only = OnlyOn(sent_on); only != nullptr) return only;
  }
  Participant* participant = Find(ssrc, path);
  if (participant == nullptr) return nullptr;
  std::vector<Stream*>& streams = participant->streams;
  const auto found = std::ranges::find_if(streams, [&](const Stream* s) { return s->path == sent_on; });
  if (found != streams.end()) return *found;
  if (streams.empty()) return New(ssrc, sent_on, &streams);
  if (streams.front()->sent) Learn(streams.front()->path, sent_on);
  return streams.front();
}

Stream* StreamTable::OnlyOn(const Path& path) const {
  Stream* only = nullptr;
  for (const auto& stream : streams_) {
    if (!stream->ssrc || *stream->ssrc == 0 || stream->path != path) continue;
    if (only != nullptr) return nullptr;
    only = stream.get();
  }
  return only;
}

void StreamTable::Learn(const Path& sent_on, const Path& path) {
  const bool known = std::ranges::any_of(answered_, [&](const auto& pair) { return pair.second == path; });
  if (!known && answered_.size() < kMostStreams) answered_.emplace_back(sent_on, path);
}

void StreamTable::Settle() {
  for (const auto& stream : streams_) {
    if (stream->sent) continue;
    const auto known = std::ranges::find(answered_, stream->path, &std::pair<Path, Path>::second);
    if (known != answered_.end()) stream->path = known->first;
  }
  std::vector<Path> paths;
  for (const auto& stream : streams_) {
    if (std::ranges::find(paths, stream->path) == paths.end()) paths.push_back(stream->path);
  }
  std::ranges::stable_sort(streams_, {}, [&](const auto& stream) {
    return std::tuple(std::ranges::find(paths, stream->path) - paths.begin(), !stream->ssrc, !stream->sent);
  });
}

Stream* StreamTable::Transport(const Path& path) {
  const Path sent_on = path.Reversed();
  const auto found = std::ranges::find_if(transports_, [&](const Stream* s) { return s->path == sent_on; });
  if (found != transports_.end()) return *found;
  Stream* stream = Make(std::nullopt, sent_on);
  if (stream != nullptr) transports_.push_back(stream);
  return stream;
}

}  // namespace zunrtcp
