// Envelopes and parameters in LightWave's block files, through the state function tables only.
//
// Envelope, text (as scene files write it):        binary twin:
//   { Envelope                                      ENVL
//     <key count>                                     I4 key count
//     Key value time shape p1 p2 p3 p4 p5 p6          'KEY ' F8 value, F8 time, I4 shape, F8 p1..p6
//     ...                                             ...
//     Behaviors pre post                              BHVR I4 pre, I4 post
//   }
// p1..p6: for 2-D Bezier keys the handles param[0..3] then 0 0; for every other shape tension,
// continuity, bias, the Hermite tangents param[0], param[1], then 0. Numbers are written in
// double precision so that a save, load and save again gives the same bytes.
//
// Parameter, inside the non-leaf block its owner opened:
//   Value v0 v1 v2      VALU F8 x 3 (always three)
//   State bits          STAT I4 (LWVPSF_*)
//   Channel n           CHAN I4, before each enveloped channel's
//   { Envelope ... }    ENVL as above
//
// A binary block holds at most 65535 bytes, so an envelope keeps under about 880 keys there.

#include <cstdio>
#include <string>

#include "lwhost/Animation.h"

namespace lwhost {

namespace {

const LWBlockIdent kEnvelopeBlock{LWID_('E', 'N', 'V', 'L'), "Envelope"};
const LWBlockIdent kKeyBlock{LWID_('K', 'E', 'Y', ' '), "Key"};
const LWBlockIdent kBehaviorsBlock{LWID_('B', 'H', 'V', 'R'), "Behaviors"};
const LWBlockIdent kValueBlock{LWID_('V', 'A', 'L', 'U'), "Value"};
const LWBlockIdent kStateBlock{LWID_('S', 'T', 'A', 'T'), "State"};
const LWBlockIdent kChannelBlock{LWID_('C', 'H', 'A', 'N'), "Channel"};

const LWBlockIdent kEnvelopeList[] = {kEnvelopeBlock, {0, nullptr}};
const LWBlockIdent kEnvelopeContent[] = {kKeyBlock, kBehaviorsBlock, {0, nullptr}};
const LWBlockIdent kParameterContent[] = {kValueBlock, kStateBlock, kChannelBlock, kEnvelopeBlock, {0, nullptr}};

const char* const kIncompleteSave = "the save state lacks functions it needs";
const char* const kIncompleteLoad = "the load state lacks functions it needs";

bool Usable(const LWSaveState* s) { return s && s->writeI4 && s->writeDP && s->beginBlk && s->endBlk; }
bool Usable(const LWLoadState* s) { return s && s->readI4 && s->readDP && s->findBlk && s->endBlk; }

// Small wrappers so the formats above read as they are written.
void Leaf(const LWSaveState* s, const LWBlockIdent& id) { s->beginBlk(s->writeData, &id, 1); }
void Open(const LWSaveState* s, const LWBlockIdent& id) { s->beginBlk(s->writeData, &id, 0); }
void End(const LWSaveState* s) { s->endBlk(s->writeData); }
void I4(const LWSaveState* s, const int* v, int n) { s->writeI4(s->writeData, v, n); }
void DP(const LWSaveState* s, const double* v, int n) { s->writeDP(s->writeData, v, n); }

LWID Find(const LWLoadState* s, const LWBlockIdent* list) { return s->findBlk(s->readData, list); }
void End(const LWLoadState* s) { s->endBlk(s->readData); }
int I4(const LWLoadState* s, int* v, int n) { return s->readI4(s->readData, v, n); }
int DP(const LWLoadState* s, double* v, int n) { return s->readDP(s->readData, v, n); }

std::string Number(double v) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", v);
  return text;
}

}  // namespace

// ---- envelopes ------------------------------------------------------------------------------

LWError Envelope::save(const LWSaveState* state) const {
  if (!Usable(state)) return kIncompleteSave;
  Open(state, kEnvelopeBlock);
  saveBody(state);
  End(state);
  return nullptr;
}

void Envelope::saveBody(const LWSaveState* state) const {
  const int count = static_cast<int>(keys_.size());
  I4(state, &count, 1);
  for (const auto& k : keys_) {
    const double at[2] = {k->value, k->time};
    double p[6] = {k->tension, k->continuity, k->bias, k->param[0], k->param[1], 0};
    if (k->shape == kShapeBezier2D) {
      for (int i = 0; i < 4; ++i) p[i] = k->param[i];
      p[4] = 0;
    }
    Leaf(state, kKeyBlock);
    DP(state, at, 2);
    I4(state, &k->shape, 1);
    DP(state, p, 6);
    End(state);
  }
  const int behaviors[2] = {pre_, post_};
  Leaf(state, kBehaviorsBlock);
  I4(state, behaviors, 2);
  End(state);
}

LWError Envelope::load(const LWLoadState* state, std::vector<std::string>* problems) {
  if (!Usable(state)) return kIncompleteLoad;
  if (Find(state, kEnvelopeList) != kEnvelopeBlock.id) return "no Envelope block where an envelope was expected";
  loadBody(state, problems);
  End(state);
  return nullptr;
}

// Reads into a scratch envelope so that a bad block leaves no half-loaded keys behind, and
// so that loading tells the listeners nothing key by key.
void Envelope::loadBody(const LWLoadState* state, std::vector<std::string>* problems) {
  const std::string where = "envelope \"" + name_ + "\": ";
  auto problem = [&](const std::string& what) {
    if (problems) problems->push_back(where + what);
  };

  Envelope read(nullptr, name_, type_);
  read.visible_ = visible_;
  int declared = 0;
  const bool counted = I4(state, &declared, 1) == 1;

  while (const LWID id = Find(state, kEnvelopeContent)) {
    if (id == kKeyBlock.id) {
      double at[2] = {0, 0};
      int shape = kShapeTCB;
      double p[6] = {0, 0, 0, 0, 0, 0};
      if (DP(state, at, 2) < 2) {
        problem("a Key without value and time was skipped");
      } else {
        if (I4(state, &shape, 1) < 1 || shape < kShapeTCB || shape > kShapeBezier2D) {
          problem("a key with a missing or unknown shape became TCB");
          shape = kShapeTCB;
        }
        DP(state, p, 6);
        const std::size_t before = read.keyCount();
        const EnvelopeKey* key = read.addKey(at[1], at[0], shape);
        if (!key) {
          problem("a key with a non-finite value or time was skipped");
        } else {
          if (read.keyCount() == before) problem("two keys at time " + Number(at[1]) + "; the later one was kept");
          if (shape == kShapeBezier2D) {
            for (int i = 0; i < 4; ++i) read.setAttribute(key, static_cast<LWKeyTag>(LWKEY_PARAM_0 + i), p[i]);
          } else {
            read.setAttribute(key, LWKEY_TENSION, p[0]);
            read.setAttribute(key, LWKEY_CONTINUITY, p[1]);
            read.setAttribute(key, LWKEY_BIAS, p[2]);
            read.setAttribute(key, LWKEY_PARAM_0, p[3]);
            read.setAttribute(key, LWKEY_PARAM_1, p[4]);
          }
        }
      }
    } else {
      int behaviors[2] = {kBehaviorConstant, kBehaviorConstant};
      if (I4(state, behaviors, 2) < 2 || !read.setBehaviors(behaviors[0], behaviors[1]))
        problem("Behaviors needs two codes from 0 to 5; kept Constant");
    }
    End(state);
  }

  if (counted && declared != static_cast<int>(read.keyCount()))
    problem("declares " + std::to_string(declared) + " keys but holds " + std::to_string(read.keyCount()));
  if (read.keyCount() == 0) problem("holds no keys");
  copyFrom(read);
}

// ---- parameters -----------------------------------------------------------------------------

LWError VParm::save(const LWSaveState* state) const {
  if (!Usable(state)) return kIncompleteSave;
  Leaf(state, kValueBlock);
  DP(state, value_.data(), 3);
  End(state);
  const int bits = this->state();
  Leaf(state, kStateBlock);
  I4(state, &bits, 1);
  End(state);
  for (int ch = 0; ch < channelCount(); ++ch) {
    if (!envelopes_[ch]) continue;
    Leaf(state, kChannelBlock);
    I4(state, &ch, 1);
    End(state);
    envelopes_[ch]->save(state);
  }
  return nullptr;
}

LWError VParm::load(const LWLoadState* state) {
  if (!Usable(state)) return kIncompleteLoad;
  const std::string where = "parameter \"" + name_ + "\": ";
  std::vector<std::string> problems;

  // Exactly what the data holds: no Envelope block, no envelope.
  dropEnvelopes();
  int bits = 0;
  bool stated = false, found = false;
  int named = -1;      // channel of the last Channel block not yet used
  int following = 0;   // channel an Envelope block without a Channel block goes to

  while (const LWID id = Find(state, kParameterContent)) {
    found = true;
    if (id == kValueBlock.id) {
      double v[3];
      const int n = DP(state, v, 3);
      for (int i = 0; i < n && i < 3; ++i) value_[i] = v[i];
      if (n < 3) problems.push_back(where + "Value holds " + std::to_string(n) + " of 3 numbers");
    } else if (id == kStateBlock.id) {
      stated = I4(state, &bits, 1) == 1;
      if (!stated) problems.push_back(where + "State without a number");
    } else if (id == kChannelBlock.id) {
      int ch = -1;
      if (I4(state, &ch, 1) == 1 && ch >= 0 && ch < channelCount())
        named = ch;
      else
        problems.push_back(where + "Channel outside 0.." + std::to_string(channelCount() - 1) + " ignored");
    } else {
      const int ch = named >= 0 ? named : following;
      named = -1;
      if (ch >= channelCount()) {
        problems.push_back(where + "an Envelope for no channel was skipped");
      } else {
        Envelope read(nullptr, channelName(ch), envelopeType());
        read.loadBody(state, &problems);
        if (read.keyCount() > 0) {
          ensureEnvelope(ch);
          envelopes_[ch]->copyFrom(read);
        }
        following = ch + 1;
      }
    }
    End(state);
  }

  if (!found) problems.push_back(where + "none of Value, State, Channel, Envelope found");
  if (stated && (bits & LWVPSF_ENV) && !enveloped())
    problems.push_back(where + "State says enveloped but no usable Envelope followed");
  const bool texture = stated && (bits & LWVPSF_TEX) && texType_ != LWVPDT_NOTXTR;
  if (texture != textured_) {
    textured_ = texture;
    event(texture ? LWVPEC_TEXNEW : LWVPEC_TEXOLD);
  }
  for (const std::string& p : problems) animation_.note(p);
  return nullptr;
}

}  // namespace lwhost
