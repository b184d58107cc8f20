/*
 * lwpanel.h -- classic panels ("LWPanelServices"): panels, controls, their values and the
 * shorthand macros plug-ins build them with.
 */
#ifndef LWPANEL_H
#define LWPANEL_H

#include <lwserver.h>
#include <lwxpanel.h>

#define PANEL_SERVICES_NAME "LWPanelServices"
#define LWPANELFUNCS_GLOBAL "LWPanelServices"
#define LWRASTERFUNCS_GLOBAL "RasterServices"
#define LWCONTEXTMENU_GLOBAL "ContextMenuServices"
#define LWPANELS_API_VERSION 20

typedef void *LWControlID;
typedef void *LWPanelID;

typedef unsigned short LWDualKey;

typedef struct st_display_Metrics {
  int width, height;
  int pixX, pixY;
  int maxColors, depth;
  int textHeight;
  int textAscent;
} display_Metrics;

#define LWDisplayMetrics display_Metrics

/* ---- Values exchanged with controls ---- */

typedef int LWType;

#define LWT_NULL 0
#define LWT_STRING 1
#define LWT_INTEGER 2
#define LWT_FLOAT 3
#define LWT_DISTANCE 4
#define LWT_VINT 5
#define LWT_VFLOAT 6
#define LWT_VDIST 7
#define LWT_BOOLEAN 8
#define LWT_CHOICE 9
#define LWT_SURFACE 10
#define LWT_FONT 11
#define LWT_TEXT 12
#define LWT_LAYERS 13
#define LWT_CUSTOM 14
#define LWT_RANGE 15
#define LWT_LWITEM 16
#define LWT_PERCENT 17
#define LWT_POPUP 18
#define LWT_AREA 19
#define LWT_XPANEL 20
#define LWT_TREE 21
#define LWT_MLIST 22
#define LWT_POINTER 23
#define LWT__LAST LWT_POINTER

typedef struct st_LWValString {
  LWType type;
  char *buf;
  int bufLen;
} LWValString;

typedef struct st_LWValInt {
  LWType type;
  int value;
  int defVal;
} LWValInt;

typedef struct st_LWValFloat {
  LWType type;
  double value;
  double defVal;
} LWValFloat;

typedef struct st_LWValIVector {
  LWType type;
  int val[3];
  int defVal;
} LWValIVector;

typedef struct st_LWValFVector {
  LWType type;
  double val[3];
  double defVal;
} LWValFVector;

typedef struct st_LWValCustom {
  LWType type;
  int val[4];
} LWValCustom;

/* Pointers travel here, never in intv.value: the two only overlap on 32-bit builds. */
typedef struct st_LWValPointer {
  LWType type;
  void *ptr;
} LWValPointer;

typedef union un_LWValue {
  LWType type;
  LWValString str;
  LWValInt intv;
  LWValFloat flt;
  LWValIVector ivec;
  LWValFVector fvec;
  LWValPointer ptr;
  LWValCustom cust;
} LWValue;

/* ---- Control descriptions, read by addControl according to the class ---- */

typedef struct st_LWPanStringDesc {
  LWType type;
  int width;
} LWPanStringDesc;

typedef struct st_LWPanChoiceDesc {
  LWType type;
  const char **items;
  int vertical;
} LWPanChoiceDesc;

typedef struct st_LWPanTextDesc {
  LWType type;
  const char **text;
} LWPanTextDesc;

typedef struct st_LWPanRangeDesc {
  LWType type;
  int width;
  int min;
  int max;
} LWPanRangeDesc;

typedef struct st_LWPanAreaDesc {
  LWType type;
  int width;
  int height;
} LWPanAreaDesc;

typedef struct st_LWPanLWItemDesc {
  LWType type;
  void *global;
  int itemType;
  char **list;
  int count;
  int width;
} LWPanLWItemDesc;

typedef struct st_LWPanPopupDesc {
  LWType type;
  int width;
  int (*countFn)(void *userdata);
  char *(*nameFn)(void *userdata, int index);
} LWPanPopupDesc;

/* Width in pixels, height in rows; top is the first visible row. */
typedef struct st_LWPanListBoxDesc {
  LWType type;
  int width, visItems, top;
  int (*countFn)(void *userdata);
  char *(*nameFn)(void *userdata, int index);
} LWPanListBoxDesc;

/* As the list box, with columns; colWidth answers 0 after the last column (at most 8). */
typedef struct st_LWPanMultiListBoxDesc {
  LWType type;
  int width, visItems, top;
  int (*countFn)(void *userdata);
  char *(*nameFn)(void *userdata, int index, int column);
  int (*colWidth)(void *userdata, int column);
} LWPanMultiListBoxDesc;

typedef struct st_LWPanXPanDesc {
  LWType type;
  int width, height;
  void *xpan;
} LWPanXPanDesc;

/* A NULL node is the root; a NULL moveFn forbids dragging nodes around. */
typedef struct st_LWPanTreeDesc {
  LWType type;
  int width, height;
  int (*countFn)(void *data, void *node);
  void *(*leafFn)(void *data, void *node, int index);
  char *(*infoFn)(void *data, void *node, int *nodeFlags);
  void (*moveFn)(void *data, void *node, void *parentNode, int index);
} LWPanTreeDesc;

typedef union un_LWPanControlDesc {
  LWType type;
  LWPanStringDesc string;
  LWPanChoiceDesc choice;
  LWPanTextDesc text;
  LWPanRangeDesc range;
  LWPanAreaDesc area;
  LWPanLWItemDesc lwitem;
  LWPanPopupDesc popup;
  LWPanListBoxDesc listbox;
  LWPanXPanDesc xpanel;
  LWPanTreeDesc tree;
  LWPanMultiListBoxDesc multiList;
} LWPanControlDesc;

typedef LWPanControlDesc ControlDesc;

/* ---- Tags, modes and hooks ---- */

/* Panel attributes for get/set.  PAN_USERDATA is handed to every panel hook. */
typedef enum {
  PAN_X,
  PAN_Y,
  PAN_W,
  PAN_H,
  PAN_MOUSEX,
  PAN_MOUSEY,
  PAN_FLAGS,
  PAN_USERDRAW,
  PAN_USERACTIVATE,
  PAN_USEROPEN,
  PAN_USERCLOSE,
  PAN_TITLE,
  PAN_USERDATA,
  PAN_USERKEYS,
  PAN_LWINSTANCE,
  PAN_MOUSEBUTTON,
  PAN_MOUSEMOVE,
  PAN_PANFUN,
  PAN_VERSION,
  PAN_RESULT,
  PAN_HOSTDISPLAY,
  PAN_USERKEYUPS,
  PAN_QUALIFIERS,
  PAN_TO_FRONT,
  PAN_MOUSEWHEEL
} pTag;

typedef enum { DR_ERASE, DR_RENDER, DR_GHOST, DR_REFRESH } DrMode;

/* Control attributes for get/set.  Pointer-valued ones use LWValue.ptr. */
typedef enum {
  CTL_X,
  CTL_Y,
  CTL_W,
  CTL_H,
  CTL_VALUE,
  CTL_HOTX,
  CTL_HOTY,
  CTL_HOTW,
  CTL_HOTH,
  CTL_LABELWIDTH,
  CTL_MOUSEX,
  CTL_MOUSEY,
  CTL_FLAGS,
  CTL_USERDRAW,
  CTL_USEREVENT,
  CTL_LABEL,
  CTL_USERDATA,
  CTL_PANEL,
  CTL_PANFUN,
  CTL_RANGEMIN,
  CTL_RANGEMAX,
  CTL_ACTIVATE,   /* set only */
  CTL_MOUSEBUTTON /* get only */
} cTag;

typedef enum { CTL_MOUSELEFT = 1, CTL_MOUSECENTER, CTL_MOUSERIGHT } mBut;

typedef enum { MX_HCHOICE, MX_VCHOICE, MX_POPUP } MxType;

typedef void (*LWPanHook)(LWPanelID pan, void *userdata);
typedef int (*LWPanKeyHook)(LWPanelID pan, void *userdata, LWDualKey key);
typedef void (*LWPanMouseHook)(LWPanelID pan, void *userdata, int qualifiers, int x, int y);
typedef void (*LWPanDrawHook)(LWPanelID pan, void *userdata, DrMode mode);
typedef void (*LWCtlDrawHook)(LWControlID ctl, void *userdata, DrMode mode);
typedef void (*LWCtlEventHook)(LWControlID ctl, void *userdata);

/* ---- Function tables ---- */

typedef struct st_DrawFuncs {
  void (*drawPixel)(LWPanelID pan, int c, int x, int y);
  void (*drawRGBPixel)(LWPanelID pan, int r, int g, int b, int x, int y);
  void (*drawLine)(LWPanelID pan, int c, int x, int y, int x2, int y2);
  void (*drawBox)(LWPanelID pan, int c, int x, int y, int w, int h);
  void (*drawRGBBox)(LWPanelID pan, int r, int g, int b, int x, int y, int w, int h);
  void (*drawBorder)(LWPanelID pan, int indent, int x, int y, int w, int h); /* h 0: divider */
  int (*textWidth)(LWPanelID pan, char *text);
  void (*drawText)(LWPanelID pan, char *text, int c, int x, int y);
  const LWDisplayMetrics *(*dispMetrics)(void);
} DrawFuncs;

/* Returned by addControl; the record itself is the control's id. */
typedef struct st_LWControl {
  void (*draw)(LWControlID ctl, DrMode mode);
  void (*get)(LWControlID ctl, cTag tag, LWValue *value);
  void (*set)(LWControlID ctl, cTag tag, LWValue *value);
  void *priv_data;
} LWControl;

typedef struct st_LWPanelFuncs {
  LWPanelID (*create)(char *title, void *panf);
  void (*destroy)(LWPanelID pan);
  int (*open)(LWPanelID pan, int flags); /* PANF_* */
  int (*handle)(LWPanelID pan, int flags); /* EVNT_*; -1 once closed */
  void (*draw)(LWPanelID pan, DrMode mode);
  void (*close)(LWPanelID pan);
  void (*get)(LWPanelID pan, pTag tag, void *value);
  void (*set)(LWPanelID pan, pTag tag, void *value);
  LWControl *(*addControl)(LWPanelID pan, char *type, ControlDesc *data, char *label);
  LWControl *(*nextControl)(LWPanelID pan, LWControlID ctl);
  DrawFuncs *drawFuncs;
  void *user_data;       /* free for plug-ins, but shared by all of them */
  GlobalFunc *globalFun; /* plug-ins should store their global lookup here */
} LWPanelFuncs;

/* ---- Flags and codes ---- */

#define PANF_BLOCKING 1   /* open returns when the panel closes */
#define PANF_CANCEL 2     /* Continue and Cancel rather than Continue alone */
#define PANF_FRAME 4      /* window title bar */
#define PANF_MOUSETRAP 8  /* deliver mouse input to the hooks */
#define PANF_PASSALLKEYS 16
#define PANF_ABORT 32     /* with PANF_CANCEL: Abort instead of Continue */
#define PANF_NOBUTT 64    /* no Continue/Cancel buttons */
#define PANF_RESIZE 128

#define CTLF_DISABLE 0x100
#define CTLF_INVISIBLE 0x200
#define CTLF_GHOST CTLF_DISABLE

/* Extra item kinds for item lists; LWI_BONE comes from lwrender.h. */
#define LWI_IMAGE (LWI_BONE + 1)
#define LWI_ANY (LWI_IMAGE + 1)

#define NODE_FLAG_EXPND 1
#define NODE_FLAG_WRITE 1024

#define EVNT_BLOCKING 1 /* handle() waits for input */
#define EVNT_ALL 2      /* handle() drains the whole queue */

/* Input qualifier bits passed to mouse hooks. */
#define IQ_CTRL 1
#define IQ_SHIFT 2
#define IQ_ALT 4
#define IQ_CONSTRAIN 8
#define IQ_ADJUST 16
#define MOUSE_LEFT 32
#define MOUSE_MID 64
#define MOUSE_RIGHT 96
#define MOUSE_DOWN 128
#define RCLICK(code) (((code) & MOUSE_LEFT) && ((code) & MOUSE_MID) ? 1 : 0)
#define LCLICK(code) (((code) & MOUSE_LEFT) && !((code) & MOUSE_MID) ? 1 : 0)
#define MCLICK(code) (!((code) & MOUSE_LEFT) && ((code) & MOUSE_MID) ? 1 : 0)

#define TRUECOLOR(dm) ((dm)->depth ? 1 : 0)
#define PALETTESIZE(dm) ((dm)->depth ? 1 << 24 : 1 << (dm)->depth)

/* ---- Colours: system palette entries, or a packed RGB value (note the b/g order) ---- */

#define RGB_(r, g, b) ((unsigned int)(((r) << 16) | ((b) << 8) | (g) | 0x1000000))
#define SYSTEM_Ic(i) (4136 + (i))

#define LWP_NONE SYSTEM_Ic(0)
#define LWP_INVERT SYSTEM_Ic(1)
#define LWP_BG SYSTEM_Ic(2)
#define LWP_NORMAL SYSTEM_Ic(3)
#define LWP_HEADLINE SYSTEM_Ic(4)
#define LWP_INFO_BG SYSTEM_Ic(5)
#define LWP_INFO_IMG SYSTEM_Ic(6)
#define LWP_INFO_DIS SYSTEM_Ic(7)
#define LWP_EDIT_BG SYSTEM_Ic(8)
#define LWP_EDIT_IMG SYSTEM_Ic(9)
#define LWP_EDIT_SEL SYSTEM_Ic(10)
#define LWP_EDIT_DIS SYSTEM_Ic(11)
#define LWP_BLACK SYSTEM_Ic(12)
#define LWP_SHADOW SYSTEM_Ic(13)
#define LWP_LOWERED SYSTEM_Ic(14)
#define LWP_RAISED SYSTEM_Ic(15)
#define LWP_HILIGHT SYSTEM_Ic(16)
#define LWP_0_STAT SYSTEM_Ic(17)
#define LWP_1_STAT SYSTEM_Ic(18)
#define LWP_2_STAT SYSTEM_Ic(19)
#define LWP_3_STAT SYSTEM_Ic(20)
#define LWP_4_STAT SYSTEM_Ic(21)
#define LWP_5_STAT SYSTEM_Ic(22)
#define LWP_0_DLOG SYSTEM_Ic(23)
#define LWP_1_DLOG SYSTEM_Ic(24)
#define LWP_2_DLOG SYSTEM_Ic(25)
#define LWP_3_DLOG SYSTEM_Ic(26)
#define LWP_4_DLOG SYSTEM_Ic(27)
#define LWP_5_DLOG SYSTEM_Ic(28)
#define LWP_0_DOIT SYSTEM_Ic(29)
#define LWP_1_DOIT SYSTEM_Ic(30)
#define LWP_2_DOIT SYSTEM_Ic(31)
#define LWP_3_DOIT SYSTEM_Ic(32)
#define LWP_4_DOIT SYSTEM_Ic(33)
#define LWP_5_DOIT SYSTEM_Ic(34)
#define LWP_0_DRAG SYSTEM_Ic(35)
#define LWP_1_DRAG SYSTEM_Ic(36)
#define LWP_2_DRAG SYSTEM_Ic(37)
#define LWP_3_DRAG SYSTEM_Ic(38)
#define LWP_4_DRAG SYSTEM_Ic(39)
#define LWP_5_DRAG SYSTEM_Ic(40)
#define LWP_1_BG SYSTEM_Ic(41)
#define LWP_2_BG SYSTEM_Ic(42)
#define LWP_3_BG SYSTEM_Ic(43)

/* Names for the default look of some entries. */
#define LWP_GRAY1 SYSTEM_Ic(7)
#define LWP_GRAY2 SYSTEM_Ic(13)
#define LWP_GRAY3 SYSTEM_Ic(1)
#define LWP_GRAY4 SYSTEM_Ic(8)
#define LWP_GRAY5 SYSTEM_Ic(5)
#define LWP_GRAY6 SYSTEM_Ic(2)
#define LWP_GRAY7 SYSTEM_Ic(11)
#define LWP_GRAY8 SYSTEM_Ic(9)
#define LWP_WHITE SYSTEM_Ic(4)
#define LWP_CANARY1 SYSTEM_Ic(17)
#define LWP_CANARY2 SYSTEM_Ic(18)
#define LWP_CANARY3 SYSTEM_Ic(19)
#define LWP_CANARY4 SYSTEM_Ic(20)
#define LWP_CANARY5 SYSTEM_Ic(21)
#define LWP_CANARY6 SYSTEM_Ic(22)
#define LWP_AQUA1 SYSTEM_Ic(23)
#define LWP_AQUA2 SYSTEM_Ic(24)
#define LWP_AQUA3 SYSTEM_Ic(25)
#define LWP_AQUA4 SYSTEM_Ic(26)
#define LWP_AQUA5 SYSTEM_Ic(27)
#define LWP_AQUA6 SYSTEM_Ic(28)
#define LWP_LAVENDER1 SYSTEM_Ic(29)
#define LWP_LAVENDER2 SYSTEM_Ic(30)
#define LWP_LAVENDER3 SYSTEM_Ic(31)
#define LWP_LAVENDER4 SYSTEM_Ic(32)
#define LWP_LAVENDER5 SYSTEM_Ic(33)
#define LWP_LAVENDER6 SYSTEM_Ic(34)
#define LWP_OLIVE1 SYSTEM_Ic(35)
#define LWP_OLIVE2 SYSTEM_Ic(36)
#define LWP_OLIVE3 SYSTEM_Ic(37)
#define LWP_OLIVE4 SYSTEM_Ic(38)
#define LWP_OLIVE5 SYSTEM_Ic(39)
#define LWP_OLIVE6 SYSTEM_Ic(40)

#define COLOR_BG LWP_BG
#define COLOR_DK_YELLOW LWP_EDIT_IMG
#define COLOR_DK_GREY LWP_SHADOW
#define COLOR_LT_YELLOW LWP_EDIT_SEL
#define COLOR_BLACK LWP_NORMAL
#define COLOR_WHITE LWP_HEADLINE

/*
 * ---- Shorthands ----
 * The control builders fill a ControlDesc named `desc` that the caller declares; class names
 * are cast because addControl takes a plain char pointer.  The value helpers use
 * caller-declared LWValue variables of matching type:
 *   LWValue ival = {LWT_INTEGER}, ivecval = {LWT_VINT}, fval = {LWT_FLOAT},
 *           fvecval = {LWT_VFLOAT}, sval = {LWT_STRING}, pval = {LWT_POINTER};
 */
#define PAN_CREATE(pf, title) ((*(pf)->create)(title, NULL))
#define PAN_POST(pf, pan) ((*(pf)->open)(pan, PANF_BLOCKING | PANF_CANCEL | PANF_FRAME))
#define PAN_KILL(pf, pan) ((*(pf)->destroy)(pan))

#define BUTTON_CTL(pf, pan, label) \
  (desc.type = LWT_INTEGER, (*(pf)->addControl)(pan, (char *)"ButtonControl", &desc, label))
#define WBUTTON_CTL(pf, pan, label, w) \
  (desc.type = LWT_AREA, desc.area.width = (w), desc.area.height = 0, \
   (*(pf)->addControl)(pan, (char *)"ButtonControl", &desc, label))
#define SAVEBUTTON_CTL(pf, pan, label, w) \
  (desc.type = LWT_STRING, desc.string.width = (w), \
   (*(pf)->addControl)(pan, (char *)"SaveButtonControl", &desc, label))
/* Leaves listbox.top as the caller set it. */
#define LISTBOX_CTL(pf, pan, label, w, vis, name, count) \
  (desc.type = LWT_POPUP, desc.listbox.width = (w), desc.listbox.nameFn = (name), \
   desc.listbox.countFn = (count), desc.listbox.visItems = (vis), \
   (*(pf)->addControl)(pan, (char *)"ListBoxControl", &desc, label))

#define SET_STR(ctl, s, len) \
  (sval.str.buf = (s), sval.str.bufLen = (len), (*(ctl)->set)(ctl, CTL_VALUE, &sval))
#define SET_INT(ctl, n) (ival.intv.value = (n), (*(ctl)->set)(ctl, CTL_VALUE, &ival))
#define SET_ADDR(ctl, p) (pval.ptr.ptr = (p), (*(ctl)->set)(ctl, CTL_VALUE, &pval))
#define SET_FLOAT(ctl, f) (fval.flt.value = (f), (*(ctl)->set)(ctl, CTL_VALUE, &fval))
#define SET_FVEC(ctl, x, y, z) \
  (fvecval.fvec.val[0] = (x), fvecval.fvec.val[1] = (y), fvecval.fvec.val[2] = (z), \
   (*(ctl)->set)(ctl, CTL_VALUE, &fvecval))
#define SET_IVEC(ctl, x, y, z) \
  (ivecval.ivec.val[0] = (x), ivecval.ivec.val[1] = (y), ivecval.ivec.val[2] = (z), \
   (*(ctl)->set)(ctl, CTL_VALUE, &ivecval))
#define SETV_FVEC(ctl, v) \
  (fvecval.fvec.val[0] = (v)[0], fvecval.fvec.val[1] = (v)[1], fvecval.fvec.val[2] = (v)[2], \
   (*(ctl)->set)(ctl, CTL_VALUE, &fvecval))
#define SETV_IVEC(ctl, v) \
  (ivecval.ivec.val[0] = (v)[0], ivecval.ivec.val[1] = (v)[1], ivecval.ivec.val[2] = (v)[2], \
   (*(ctl)->set)(ctl, CTL_VALUE, &ivecval))

#define GET_STR(ctl, s, len) \
  (sval.str.buf = (s), sval.str.bufLen = (len), (*(ctl)->get)(ctl, CTL_VALUE, &sval))
#define GET_INT(ctl, n) ((*(ctl)->get)(ctl, CTL_VALUE, &ival), (n) = ival.intv.value)
#define GET_ADDR(ctl, p) ((*(ctl)->get)(ctl, CTL_VALUE, &pval), (p) = pval.ptr.ptr)
#define GET_FLOAT(ctl, f) ((*(ctl)->get)(ctl, CTL_VALUE, &fval), (f) = fval.flt.value)
#define GET_FVEC(ctl, x, y, z) \
  ((*(ctl)->get)(ctl, CTL_VALUE, &fvecval), (x) = fvecval.fvec.val[0], (y) = fvecval.fvec.val[1], \
   (z) = fvecval.fvec.val[2])
#define GETV_FVEC(ctl, v) \
  ((*(ctl)->get)(ctl, CTL_VALUE, &fvecval), (v)[0] = fvecval.fvec.val[0], (v)[1] = fvecval.fvec.val[1], \
   (v)[2] = fvecval.fvec.val[2])
#define GET_IVEC(ctl, x, y, z) \
  ((*(ctl)->get)(ctl, CTL_VALUE, &ivecval), (x) = ivecval.ivec.val[0], (y) = ivecval.ivec.val[1], \
   (z) = ivecval.ivec.val[2])
#define GETV_IVEC(ctl, v) \
  ((*(ctl)->get)(ctl, CTL_VALUE, &ivecval), (v)[0] = ivecval.ivec.val[0], (v)[1] = ivecval.ivec.val[1], \
   (v)[2] = ivecval.ivec.val[2])

#define CON_X(ctl) ((*(ctl)->get)(ctl, CTL_X, &ival), ival.intv.value)
#define CON_Y(ctl) ((*(ctl)->get)(ctl, CTL_Y, &ival), ival.intv.value)
#define CON_W(ctl) ((*(ctl)->get)(ctl, CTL_W, &ival), ival.intv.value)
#define CON_H(ctl) ((*(ctl)->get)(ctl, CTL_H, &ival), ival.intv.value)
#define CON_LW(ctl) ((*(ctl)->get)(ctl, CTL_LABELWIDTH, &ival), ival.intv.value)
#define CON_HOTX(ctl) ((*(ctl)->get)(ctl, CTL_HOTX, &ival), ival.intv.value)
#define CON_HOTY(ctl) ((*(ctl)->get)(ctl, CTL_HOTY, &ival), ival.intv.value)
#define CON_HOTW(ctl) ((*(ctl)->get)(ctl, CTL_HOTW, &ival), ival.intv.value)
#define CON_HOTH(ctl) ((*(ctl)->get)(ctl, CTL_HOTH, &ival), ival.intv.value)
#define CON_MOUSEX(ctl) ((*(ctl)->get)(ctl, CTL_MOUSEX, &ival), ival.intv.value)
#define CON_MOUSEY(ctl) ((*(ctl)->get)(ctl, CTL_MOUSEY, &ival), ival.intv.value)
#define CON_PAN(ctl) ((*(ctl)->get)(ctl, CTL_PANEL, &sval), sval.ptr.ptr)
#define CON_PANFUN(ctl) ((*(ctl)->get)(ctl, CTL_PANFUN, &sval), sval.ptr.ptr)
#define MOVE_CON(ctl, x, y) \
  ((ival.intv.value = (x), (*(ctl)->set)(ctl, CTL_X, &ival)), \
   (ival.intv.value = (y), (*(ctl)->set)(ctl, CTL_Y, &ival)))
/* Stores the user data first, then the event hook, both as pointers. */
#define CON_SETEVENT(ctl, f, d) \
  ((ival.ptr.ptr = (void *)(d), (*(ctl)->set)(ctl, CTL_USERDATA, &ival)), \
   (ival.ptr.ptr = (void *)(f), (*(ctl)->set)(ctl, CTL_USEREVENT, &ival)))
#define ERASE_CON(ctl) ((*(ctl)->draw)(ctl, DR_ERASE))
#define REDRAW_CON(ctl) ((*(ctl)->draw)(ctl, DR_REFRESH))
#define GHOST_CON(ctl) ((*(ctl)->draw)(ctl, DR_GHOST))
#define RENDER_CON(ctl) ((*(ctl)->draw)(ctl, DR_RENDER))
#define UNGHOST_CON(ctl) ((*(ctl)->draw)(ctl, DR_RENDER))
#define ACTIVATE_CON(ctl) (ival.intv.value = 0, (*(ctl)->set)(ctl, CTL_ACTIVATE, &ival))

#define PAN_GETX(pf, pan) ((*(pf)->get)(pan, PAN_X, (void *)&ival.intv.value), ival.intv.value)
#define PAN_GETY(pf, pan) ((*(pf)->get)(pan, PAN_Y, (void *)&ival.intv.value), ival.intv.value)
#define PAN_GETW(pf, pan) ((*(pf)->get)(pan, PAN_W, (void *)&ival.intv.value), ival.intv.value)
#define PAN_GETH(pf, pan) ((*(pf)->get)(pan, PAN_H, (void *)&ival.intv.value), ival.intv.value)
#define PAN_SETW(pf, pan, w) (ival.intv.value = (w), (*(pf)->set)(pan, PAN_W, (void *)&ival.intv.value))
#define PAN_SETH(pf, pan, h) (ival.intv.value = (h), (*(pf)->set)(pan, PAN_H, (void *)&ival.intv.value))
#define MOVE_PAN(pf, pan, x, y) \
  (ival.intv.value = (x), (*(pf)->set)(pan, PAN_X, (void *)&ival.intv.value), ival.intv.value = (y), \
   (*(pf)->set)(pan, PAN_Y, (void *)&ival.intv.value))
/* Pointer-valued panel tags take the pointer itself, not its address. */
#define PAN_SETDATA(pf, pan, d) ((*(pf)->set)(pan, PAN_USERDATA, (void *)(d)))
#define PAN_SETDRAW(pf, pan, d) ((*(pf)->set)(pan, PAN_USERDRAW, (void *)(d)))
#define PAN_SETKEYS(pf, pan, d) ((*(pf)->set)(pan, PAN_USERKEYS, (void *)(d)))
#define PAN_GETVERSION(pf, pan) ((*(pf)->get)(pan, PAN_VERSION, (void *)&ival.intv.value), ival.intv.value)

#endif
