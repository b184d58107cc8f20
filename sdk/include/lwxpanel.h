/*
 * lwxpanel.h -- form panels ("LWXPanel"): control and data tables, hint arrays, callbacks.
 */
#ifndef LWSDK_LWXPANEL_H
#define LWSDK_LWXPANEL_H

#include <lwtypes.h>

#define LWXPANELFUNCS_GLOBAL "LWXPanel"

typedef void *LWXPanelID;
typedef void *LWXPDrAreaID;

/*
 * A hint array is a run of pointer-sized words: tag, its arguments, next tag, ... and a final 0.
 * The low byte of a tag gives its arity: bits 0-6 count the fixed arguments, bit 7 says a
 * 0-terminated list follows them.  Ids are unsigned and start at 0x8000.
 */
typedef void *LWXPanelHint;

#define XpH(x) ((void *)(x))

#define XPTAG_END XpH(0)
#define XPTAG_NULL XpH(0)
#define XPTAG_CALL XpH(0xDD002)
#define XPTAG_NEST XpH(0x101)

#define XPTAG_LABEL XpH(0x3D000B03)
#define XPTAG_CLASS XpH(0x3D000C02)
#define XPTAG_ADD XpH(0x3D000D03)
#define XPTAG_DELETE XpH(0x3D000E01)
#define XPTAG_CHGNOTIFY XpH(0x3D000F01)
#define XPTAG_FOCUS XpH(0x3D001201)
#define XPTAG_DESTROYNOTIFY XpH(0x3D001302)
#define XPTAG_AUTORESTORE XpH(0x3D001481)

#define XPTAG_VALUE XpH(0x3D006502)
#define XPTAG_LINK XpH(0x3D006681)
#define XPTAG_IMMUPD XpH(0x3D006781)
#define XPTAG_TRACK XpH(0x3D006802)
#define XPTAG_ORIENT XpH(0x3D00CB02)

#define XPTAG_MIN XpH(0x3D014002)
#define XPTAG_MAX XpH(0x3D014102)
#define XPTAG_STEP XpH(0x3D014202)
#define XPTAG_RANGE XpH(0x3D014304)
#define XPTAG_SENS XpH(0x3D014402)
#define XPTAG_STRLIST XpH(0x3D014503)
#define XPTAG_HARDMINMAX XpH(0x3D014703)
#define XPTAG_CLRMINMAX XpH(0x3D014803)

#define XPTAG_BUTNOTIFY XpH(0x3D015F02)
#define XPTAG_POPCMDFUNC XpH(0x3D016002)
#define XPTAG_POPFUNCS XpH(0x3D016203)
#define XPTAG_INTXFORM XpH(0x3D016303)
#define XPTAG_DRAWCBFUNC XpH(0x3D016502)
#define XPTAG_ZOOMCBFUNC XpH(0x3D016603)
#define XPTAG_TEXTXFORMFUNC XpH(0x3D016802)
#define XPTAG_VECLABEL XpH(0x3D017202)
#define XPTAG_CTRLFRONT XpH(0x3D017301)
#define XPTAG_CTRLCFG XpH(0x3D017403)
#define XPTAG_XREQCFG XpH(0x3D019105)

#define XPTAG_ALIAS XpH(0x3D01F481)
#define XPTAG_UNALIAS XpH(0x3D01F581)
#define XPTAG_ENABLE XpH(0x3D01F984)
#define XPTAG_GROUP XpH(0x3D01FE81)
#define XPTAG_ORDER XpH(0x3D01FF81)
#define XPTAG_STACK XpH(0x3D020983)
#define XPTAG_TABS XpH(0x3D020A81)
#define XPTAG_LEFT XpH(0x3D021280)
#define XPTAG_NARROW XpH(0x3D021380)
#define XPTAG_DIVADD XpH(0x3D021481)
#define XPTAG_BORDER XpH(0x3D021501)
#define XPTAG_DIVREM XpH(0x3D021581)
#define XPTAG_DLOGTYPE XpH(0x3D02BD01)

/*
 * Hint builders.  Each expands to a comma-separated run of words.  A trailing underscore
 * means the caller supplies the 0-terminated id list (and its end marker) itself.
 */
#define XpEND XPTAG_END
#define XpCALL(ref) XPTAG_CALL, XPTAG_NULL, XpH(ref)
#define XpSUBCALL(id, ref) XPTAG_CALL, XpH(id), XpH(ref)
#define XpNEST(id) XPTAG_NEST, XpH(id)

#define XpLABEL(id, str) XPTAG_LABEL, XpH(id), XpH(str), XPTAG_NULL
#define XpCLASS(id, cls) XPTAG_CLASS, XpH(id), XpH(cls)
#define XpADD(id, cls, vid) XPTAG_ADD, XpH(id), XpH(cls), XpH(vid)
#define XpDELETE(id) XPTAG_DELETE, XpH(id)
#define XpCHGNOTIFY(func) XPTAG_CHGNOTIFY, XpH(func)
#define XpFOCUS(cid) XPTAG_FOCUS, XpH(cid)
#define XpDESTROYNOTIFY(func) XPTAG_DESTROYNOTIFY, XpH(func), XPTAG_NULL
#define XpRESTORE(vid) XPTAG_AUTORESTORE, XpH(1), XpH(vid), XPTAG_NULL
#define XpRESTORE_() XPTAG_AUTORESTORE, XpH(1)
#define XpRESTORE_ON XPTAG_AUTORESTORE, XpH(1), XPTAG_NULL
#define XpRESTORE_OFF XPTAG_AUTORESTORE, XpH(0), XPTAG_NULL

#define XpVALUE(cid, vid) XPTAG_VALUE, XpH(cid), XpH(vid)
#define XpLINK(vid, link) XPTAG_LINK, XpH(vid), XpH(link), XPTAG_NULL
#define XpLINK_(vid) XPTAG_LINK, XpH(vid)
#define XpIMMUPD(cid, dep) XPTAG_IMMUPD, XpH(cid), XpH(dep), XPTAG_NULL
#define XpIMMUPD_(cid) XPTAG_IMMUPD, XpH(cid)
#define XpTRACK(cid, on) XPTAG_TRACK, XpH(cid), XpH(on)
#define XpORIENT(cid, dir) XPTAG_ORIENT, XpH(cid), XpH(dir)

#define XpMIN(cid, lo) XPTAG_MIN, XpH(cid), XpH(lo)
#define XpMAX(cid, hi) XPTAG_MAX, XpH(cid), XpH(hi)
#define XpSTEP(cid, step) XPTAG_STEP, XpH(cid), XpH(step)
#define XpRANGE(cid, lo, hi, step) XPTAG_RANGE, XpH(cid), XpH(lo), XpH(hi), XpH(step)
#define XpHARDMINMAX(cid, lo, hi) XPTAG_HARDMINMAX, XpH(cid), XpH(lo), XpH(hi)
#define XpCLRMINMAX(cid, lo, hi) XPTAG_CLRMINMAX, XpH(cid), XpH(lo), XpH(hi)
#define XpSENS(cid, sens) XPTAG_SENS, XpH(cid), XpH(sens)

#define XpSTRLIST(cid, list) XPTAG_STRLIST, XpH(cid), XpH(list), XPTAG_NULL
#define XpVECLABEL(cid, list) XPTAG_VECLABEL, XpH(cid), XpH(list)
#define XpCTRLFRONT(cid) XPTAG_CTRLFRONT, XpH(cid)
#define XpCTRLCFG(cid, opts) XPTAG_CTRLCFG, XpH(cid), XPTAG_NULL, XpH(opts)
#define XpXREQCFG(cid, mode, title, ftype) \
  XPTAG_XREQCFG, XpH(cid), XpH(mode), XpH(title), XpH(ftype), XPTAG_NULL

#define XpBUTNOTIFY(cid, func) XPTAG_BUTNOTIFY, XpH(cid), XpH(func)
#define XpPOPCMDFUNC(cid, func) XPTAG_POPCMDFUNC, XpH(cid), XpH(func)
#define XpPOPFUNCS(cid, count, name) XPTAG_POPFUNCS, XpH(cid), XpH(count), XpH(name)
#define XpINTXFORM(cid, count, ilist) XPTAG_INTXFORM, XpH(cid), XpH(count), XpH(ilist)
#define XpPOPXFORM(cid, count, ilist) XpINTXFORM(cid, count, ilist)
#define XpCHOXFORM(cid, count, ilist) XpINTXFORM(cid, count, ilist)
#define XpDRAWCBFUNC(cid, func) XPTAG_DRAWCBFUNC, XpH(cid), XpH(func)
#define XpZOOMCBFUNC(cid, func, region) XPTAG_ZOOMCBFUNC, XpH(cid), XpH(func), XpH(region)
#define XpTEXTXFORMFUNC(cid, func) XPTAG_TEXTXFORMFUNC, XpH(cid), XpH(func)

#define XpALIAS_(id) XPTAG_ALIAS, XpH(id)
#define XpUNALIAS_(id) XPTAG_UNALIAS, XpH(id)

/* Enable words: vid, message, 0, value map, then (for XpENABLE) the controlled ids. */
#define XpENABLE(vid, sub) XPTAG_ENABLE, XpH(vid), XPTAG_NULL, XPTAG_NULL, XPTAG_NULL, XpH(sub), XPTAG_NULL
#define XpENABLE_(vid) XPTAG_ENABLE, XpH(vid), XPTAG_NULL, XPTAG_NULL, XPTAG_NULL
#define XpENABLE_MAP_(vid, map) XPTAG_ENABLE, XpH(vid), XPTAG_NULL, XPTAG_NULL, XpH(map)
#define XpENABLEMSG_(vid, msg) XPTAG_ENABLE, XpH(vid), XpH(msg), XPTAG_NULL, XPTAG_NULL
#define XpENABLEMSG_MAP_(vid, map, msg) XPTAG_ENABLE, XpH(vid), XpH(msg), XPTAG_NULL, XpH(map)

#define XpGROUP_(gid) XPTAG_GROUP, XpH(gid)
#define XpORDER_(gid) XPTAG_ORDER, XpH(gid)
#define XpSTACK_(gid, vid) XPTAG_STACK, XpH(gid), XpH(vid), XPTAG_NULL
#define XpSTACK_MAP_(gid, vid, map) XPTAG_STACK, XpH(gid), XpH(vid), XpH(map)
#define XpTABS_(gid) XPTAG_TABS, XpH(gid)
#define XpLEFT(gid) XPTAG_LEFT, XpH(gid), XPTAG_NULL
#define XpLEFT_() XPTAG_LEFT
#define XpNARROW(gid) XPTAG_NARROW, XpH(gid), XPTAG_NULL
#define XpNARROW_() XPTAG_NARROW
#define XpDIVADD(id) XPTAG_DIVADD, XpH(id), XPTAG_NULL
#define XpDIVADD_(id) XPTAG_DIVADD, XpH(id)
#define XpDIVREM(id) XPTAG_DIVREM, XpH(id), XPTAG_NULL
#define XpDIVREM_(id) XPTAG_DIVREM, XpH(id)
#define XpBORDER(type) XPTAG_BORDER, XpH(type)
#define XpDLOGTYPE(type) XPTAG_DLOGTYPE, XpH(type)

/* Rows of both tables end with an all-zero entry. */
typedef struct st_LWXPanelControl {
  unsigned int cid;
  const char *label;
  const char *ctrlclass;
} LWXPanelControl;

typedef struct st_LWXPanelDataDesc {
  unsigned int vid;
  const char *name;
  const char *datatype;
} LWXPanelDataDesc;

/* Colours are panel palette codes; the origin is the area's top-left corner. */
typedef struct st_LWXPDrawFuncs {
  void (*drawPixel)(LWXPDrAreaID area, int c, int x, int y);
  void (*drawRGBPixel)(LWXPDrAreaID area, int r, int g, int b, int x, int y);
  void (*drawLine)(LWXPDrAreaID area, int c, int x, int y, int x2, int y2);
  void (*drawBox)(LWXPDrAreaID area, int c, int x, int y, int w, int h);
  void (*drawRGBBox)(LWXPDrAreaID area, int r, int g, int b, int x, int y, int w, int h);
  void (*drawBorder)(LWXPDrAreaID area, int indent, int x, int y, int w, int h);
  int (*textWidth)(LWXPDrAreaID area, char *text);
  int (*textHeight)(LWXPDrAreaID area, char *text);
  void (*drawText)(LWXPDrAreaID area, char *text, int c, int x, int y);
} LWXPDrawFuncs;

#define LWXP_VIEW 1
#define LWXP_FORM 2

/* Event argument of the change notification. */
typedef enum en_LWXPEventTypes {
  LWXPEVENT_TRACK = 1, /* value still moving (slider drag) */
  LWXPEVENT_VALUE,     /* value committed */
  LWXPEVENT_HIT,       /* valueless control pressed */
  LWXPEVENT_FOCUS,
  LWXPEVENT_LOSEFOCUS
} LWXPEventTypes;

/* What a set callback asks the panel to redraw; NONE also means "unknown id". */
typedef enum en_LWXPRefreshCodes {
  LWXPRC_NONE = 0,
  LWXPRC_DFLT,
  LWXPRC_DRAW,
  LWXPRC_FULL
} LWXPRefreshCode;

typedef enum {
  LWXPDLG_OKCANCEL = 2,
  LWXPDLG_DONE,
  LWXPDLG_OKONLY,
  LWXPDLG_YESNO,
  LWXPDLG_YESNOALL,
  LWXPDLG_YESNOCAN
} LWXPDialogTypes;

#define LWXPREQ_LOAD 0
#define LWXPREQ_SAVE 1
#define LWXPREQ_DIR 2

#define LWXPBDR_NONE 0
#define LWXPBDR_UP 1
#define LWXPBDR_DOWN 2

/* Thumbnail options for XpCTRLCFG: a height, an aspect, optional full width and border. */
#define THUM_SML (1 << 0)
#define THUM_MED (1 << 1)
#define THUM_LRG (1 << 2)
#define THUM_XLG (1 << 3)
#define THUM_SNGL (1 << 4)
#define THUM_SQ (1 << 16)
#define THUM_NTSC (1 << 17)
#define THUM_35MM (1 << 18)
#define THUM_PORT (1 << 19)
#define THUM_WIDE (1 << 20)
#define THUM_ANAW (1 << 21)
#define THUM_EURO (1 << 22)
#define THUM_LAND THUM_NTSC
/* Bit 31 as a (negative) int, without the undefined signed shift. */
#define THUM_FULL ((int)(1u << 31))
#define THUM_BORDER_UP (1 << 9)
#define THUM_BORDER_DOWN (1 << 10)
#define THUM_BORDER_NONE ((1 << 9) | (1 << 10))

typedef enum {
  LWXPTEXTXFORM_TODISPLAY = 0,
  LWXPTEXTXFORM_FROMDISPLAY
} LWXPanelTextXFormMode;

/* View panels read values through get (NULL = no value) and write them through set. */
typedef void *LWXPanelGetFunc(void *inst, unsigned int vid);
typedef LWXPRefreshCode LWXPanelSetFunc(void *inst, unsigned int vid, void *value);

/* Called after the panel is gone, with the panel's own user data (id 0). */
typedef void LWXPanelDestroyNotifyFunc(void *panData);
typedef LWXPRefreshCode LWXPanelChangeNotifyFunc(LWXPanelID pan, unsigned int cid, unsigned int vid,
                                                 int event_type);
typedef void LWXPanelBtnClickFunc(LWXPanelID pan, int cid);
typedef void LWXPanelPopCmdFunc(LWXPanelID pan, int cid, int cmdid);
typedef int LWXPanelPopCntFunc(void *userdata);
typedef const char *LWXPanelPopNameFunc(void *userdata, int idx);
typedef const char *LWXPanelTextXFormFunc(LWXPanelID pan, unsigned int cid, const char *string,
                                          LWXPanelTextXFormMode mode);
typedef void LWXPanelControlDrawFunc(LWXPanelID pan, unsigned int cid, LWXPDrAreaID reg, int w, int h);
typedef void LWXPanelControlZoomFunc(LWXPanelID pan, unsigned int cid, int x, int y, int *region,
                                     int clickcount);

typedef struct st_LWXPanelFuncs {
  int version;
  LWXPDrawFuncs *drawf;
  LWXPanelID (*create)(int type, LWXPanelControl *ctrlDesc);
  void (*destroy)(LWXPanelID pan);
  void (*describe)(LWXPanelID pan, LWXPanelDataDesc *dataDesc, LWXPanelGetFunc *get,
                   LWXPanelSetFunc *set);
  void (*hint)(LWXPanelID pan, unsigned int id, LWXPanelHint *hints);
  void *(*getData)(LWXPanelID pan, unsigned int id);
  void (*setData)(LWXPanelID pan, unsigned int id, void *data);
  void *(*formGet)(LWXPanelID pan, unsigned int vid);
  void (*formSet)(LWXPanelID pan, unsigned int vid, void *value);
  void (*viewInst)(LWXPanelID pan, void *inst);
  void (*viewRefresh)(LWXPanelID pan);
  int (*post)(LWXPanelID pan);
  int (*open)(LWXPanelID pan);
} LWXPanelFuncs;

/* Form value shorthands; the set forms are statements. */
#define FSETINT(fun, pan, cid, i) \
  { \
    int fset_i_ = (int)(i); \
    (*(fun)->formSet)(pan, cid, &fset_i_); \
  }
#define FGETINT(fun, pan, cid) (*((int *)(*(fun)->formGet)(pan, cid)))
#define FSETFLT(fun, pan, cid, f) \
  { \
    double fset_d_ = (double)(f); \
    (*(fun)->formSet)(pan, cid, &fset_d_); \
  }
#define FGETFLT(fun, pan, cid) (*((double *)(*(fun)->formGet)(pan, cid)))

#endif
