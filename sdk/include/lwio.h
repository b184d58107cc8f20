/*
 * lwio.h -- block-structured load and save states handed to plug-ins.
 */
#ifndef LWSDK_IO_H
#define LWSDK_IO_H

#include <lwtypes.h>

/* Binary is what object files use, text (ASCII) what scene files use. */
#define LWIO_BINARY 0
#define LWIO_ASCII 1
#define LWIO_OBJECT LWIO_BINARY
#define LWIO_SCENE LWIO_ASCII

/* Binary files store the four-character id, text files the token (no blanks). */
typedef struct st_LWBlockIdent {
  LWID id;
  const char *token;
} LWBlockIdent;

/* Every function takes writeData as its first argument. */
typedef struct st_LWSaveState {
  int ioMode;
  void *writeData;
  void (*write)(void *data, const char *buf, int len);
  void (*writeI1)(void *data, const char *vals, int n);
  void (*writeI2)(void *data, const short *vals, int n);
  void (*writeI4)(void *data, const int *vals, int n);
  void (*writeU1)(void *data, const unsigned char *vals, int n);
  void (*writeU2)(void *data, const unsigned short *vals, int n);
  void (*writeU4)(void *data, const unsigned int *vals, int n);
  void (*writeFP)(void *data, const float *vals, int n);
  void (*writeStr)(void *data, const char *str);
  void (*writeID)(void *data, const LWBlockIdent *ident);
  void (*beginBlk)(void *data, const LWBlockIdent *ident, int leaf);
  void (*endBlk)(void *data);
  int (*depth)(void *data);
  void (*writeDP)(void *data, const double *vals, int n);
} LWSaveState;

/* Every function takes readData as its first argument; the read calls return a count. */
typedef struct st_LWLoadState {
  int ioMode;
  void *readData;
  int (*read)(void *data, char *buf, int len);
  int (*readI1)(void *data, char *vals, int n);
  int (*readI2)(void *data, short *vals, int n);
  int (*readI4)(void *data, int *vals, int n);
  int (*readU1)(void *data, unsigned char *vals, int n);
  int (*readU2)(void *data, unsigned short *vals, int n);
  int (*readU4)(void *data, unsigned int *vals, int n);
  int (*readFP)(void *data, float *vals, int n);
  int (*readStr)(void *data, char *buf, int max);
  LWID (*readID)(void *data, const LWBlockIdent *idents);
  LWID (*findBlk)(void *data, const LWBlockIdent *idents);
  void (*endBlk)(void *data);
  int (*depth)(void *data);
  int (*readDP)(void *data, double *vals, int n);
} LWLoadState;

/* Shorthands that supply the state's own data pointer. */
#define LWSAVE_I1(ss, p, n) (*(ss)->writeI1)((ss)->writeData, p, n)
#define LWSAVE_I2(ss, p, n) (*(ss)->writeI2)((ss)->writeData, p, n)
#define LWSAVE_I4(ss, p, n) (*(ss)->writeI4)((ss)->writeData, p, n)
#define LWSAVE_U1(ss, p, n) (*(ss)->writeU1)((ss)->writeData, p, n)
#define LWSAVE_U2(ss, p, n) (*(ss)->writeU2)((ss)->writeData, p, n)
#define LWSAVE_U4(ss, p, n) (*(ss)->writeU4)((ss)->writeData, p, n)
#define LWSAVE_FP(ss, p, n) (*(ss)->writeFP)((ss)->writeData, p, n)
#define LWSAVE_DP(ss, p, n) (*(ss)->writeDP)((ss)->writeData, p, n)
#define LWSAVE_STR(ss, p) (*(ss)->writeStr)((ss)->writeData, p)
#define LWSAVE_ID(ss, b) (*(ss)->writeID)((ss)->writeData, b)
#define LWSAVE_BEGIN(ss, b, leaf) (*(ss)->beginBlk)((ss)->writeData, b, leaf)
#define LWSAVE_END(ss) (*(ss)->endBlk)((ss)->writeData)
#define LWSAVE_DEPTH(ss) (*(ss)->depth)((ss)->writeData)

#define LWLOAD_I1(ls, p, n) (*(ls)->readI1)((ls)->readData, p, n)
#define LWLOAD_I2(ls, p, n) (*(ls)->readI2)((ls)->readData, p, n)
#define LWLOAD_I4(ls, p, n) (*(ls)->readI4)((ls)->readData, p, n)
#define LWLOAD_U1(ls, p, n) (*(ls)->readU1)((ls)->readData, p, n)
#define LWLOAD_U2(ls, p, n) (*(ls)->readU2)((ls)->readData, p, n)
#define LWLOAD_U4(ls, p, n) (*(ls)->readU4)((ls)->readData, p, n)
#define LWLOAD_FP(ls, p, n) (*(ls)->readFP)((ls)->readData, p, n)
#define LWLOAD_DP(ls, p, n) (*(ls)->readDP)((ls)->readData, p, n)
#define LWLOAD_STR(ls, p, n) (*(ls)->readStr)((ls)->readData, p, n)
#define LWLOAD_ID(ls, b) (*(ls)->readID)((ls)->readData, b)
#define LWLOAD_FIND(ls, b) (*(ls)->findBlk)((ls)->readData, b)
#define LWLOAD_END(ls) (*(ls)->endBlk)((ls)->readData)
#define LWLOAD_DEPTH(ls) (*(ls)->depth)((ls)->readData)

/* Stand-alone files opened through the "File IO 2" global. */
#define LWFILEIOFUNCS_GLOBAL "File IO 2"
#define LWIO_BINARY_IFF 0x8C0000

typedef struct st_LWFileIOFuncs {
  LWSaveState *(*openSave)(const char *name, int ioMode);
  void (*closeSave)(LWSaveState *save);
  LWLoadState *(*openLoad)(const char *name, int ioMode);
  void (*closeLoad)(LWLoadState *load);
} LWFileIOFuncs;

#endif
