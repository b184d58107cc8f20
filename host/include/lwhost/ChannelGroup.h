#pragma once

#include <string>
#include <vector>

namespace lwhost {

class Envelope;

// A node of the channel tree. The scene root has no parent and an empty name; a group whose
// parent was destroyed before it is detached (no parent either) until it is destroyed itself.
class ChannelGroup {
 public:
  ChannelGroup(ChannelGroup* parent, std::string name) : parent_(parent), name_(std::move(name)) {}
  ChannelGroup(const ChannelGroup&) = delete;
  ChannelGroup& operator=(const ChannelGroup&) = delete;

  const std::string& name() const { return name_; }
  ChannelGroup* parent() const { return parent_; }
  const std::vector<ChannelGroup*>& groups() const { return groups_; }
  // Envelopes in the order they were created or moved here.
  const std::vector<Envelope*>& channels() const { return channels_; }

  // The first sub-group or channel of that name, or null.
  ChannelGroup* group(const std::string& name) const;
  Envelope* channel(const std::string& name) const;
  // Names from the root down, joined by '/'; empty for the root.
  std::string path() const;

 private:
  friend class Animation;
  friend class VParm;

  ChannelGroup* parent_;
  std::string name_;
  std::vector<ChannelGroup*> groups_;
  std::vector<Envelope*> channels_;
};

}  // namespace lwhost
