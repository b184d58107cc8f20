// The block reader's read functions called straight, as a plug-in would call them: the first
// byte picks the mode, the second how many operations follow, then one byte per operation
// (which read, and how much it asks for); the rest is the data.
#include <lwio.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "lwhost/BlockReader.h"

namespace {

const LWBlockIdent kIdents[] = {{LWID_('M', 'O', 'D', 'E'), "Mode"},
                                {LWID_('O', 'P', 'A', 'C'), "Opacity"},
                                {LWID_('N', 'A', 'M', 'E'), "Name"},
                                {LWID_('V', 'P', 'R', 'M'), "Parameter"},
                                {0, nullptr}};

void Operate(const LWLoadState* s, std::uint8_t op) {
  const int n = op >> 4;  // 0..15 values, or a buffer of that many bytes
  union {
    char c[16];
    unsigned char u1[16];
    short i2[16];
    unsigned short u2[16];
    int i4[16];
    unsigned int u4[16];
    float f[16];
    double d[16];
  } buffer;
  switch (op & 15) {
    case 0: s->findBlk(s->readData, kIdents); break;
    case 1: s->endBlk(s->readData); break;
    case 2: s->readID(s->readData, kIdents); break;
    case 3: s->read(s->readData, buffer.c, n); break;
    case 4: s->readI1(s->readData, buffer.c, n); break;
    case 5: s->readI2(s->readData, buffer.i2, n); break;
    case 6: s->readI4(s->readData, buffer.i4, n); break;
    case 7: s->readU1(s->readData, buffer.u1, n); break;
    case 8: s->readU2(s->readData, buffer.u2, n); break;
    case 9: s->readU4(s->readData, buffer.u4, n); break;
    case 10: s->readFP(s->readData, buffer.f, n); break;
    case 11: s->readDP(s->readData, buffer.d, n); break;
    case 12: s->readStr(s->readData, buffer.c, n); break;
    default: s->depth(s->readData); break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const lwhost::IOMode mode = data[0] & 1 ? lwhost::IOMode::Binary : lwhost::IOMode::Ascii;
  const std::size_t ops = data[1] % 32;
  if (size < 2 + ops) return 0;
  lwhost::BlockReader reader(mode, std::string(reinterpret_cast<const char*>(data) + 2 + ops, size - 2 - ops));
  // The script runs until the data is used up, as a plug-in loops over its blocks.
  for (int round = 0; round < 16; ++round)
    for (std::size_t i = 0; i < ops; ++i) Operate(reader.state(), data[2 + i]);
  reader.problems();
  return 0;
}
