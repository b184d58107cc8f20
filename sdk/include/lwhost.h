/*
 * lwhost.h -- services every LightWave program offers: messages, directories, file types,
 * and the system, product and locale words.
 */
#ifndef LWSDK_HOST_H
#define LWSDK_HOST_H

/* Each of these globals is a function, not a table. */
#define LWFILEREQFUNC_GLOBAL "File Request"
typedef int LWFileReqFunc(const char *hail, char *name, char *path, char *fullName, int buflen);

#define LWFILETYPEFUNC_GLOBAL "File Type Pattern"
typedef const char *LWFileTypeFunc(const char *type);

/* Configured folder for a file-type key; may be relative to the content folder, or NULL. */
#define LWDIRINFOFUNC_GLOBAL "Directory Info"
typedef const char *LWDirInfoFunc(const char *type);

/* Keys understood by the two functions above. */
#define LWFTYPE_CONTENT "Content"
#define LWFTYPE_ANIMATION "Animations"
#define LWFTYPE_IMAGE "Images"
#define LWFTYPE_ENVELOPE "Envelopes"
#define LWFTYPE_MOTION "Motions"
#define LWFTYPE_OBJECT "Objects"
#define LWFTYPE_PLUGIN "Plug-ins"
#define LWFTYPE_PREVIEW "Previews"
#define LWFTYPE_PSFONT "PSFonts"
#define LWFTYPE_SCENE "Scenes"
#define LWFTYPE_SETTING "Settings"
#define LWFTYPE_SURFACE "Surfaces"
#define LWFTYPE_NODES "Nodes"
#define LWFTYPE_SOUNDS "Sounds"
#define LWFTYPE_DYNAMICS "Dynamics"
#define LWFTYPE_RIGS "Rigs"
#define LWFTYPE_INSTALL "Install"
#define LWFTYPE_LIGHTS "Lights"
#define LWFTYPE_RADIOSITY "Radiosity"

/*
 * Two lines of text each; the second may be NULL.  Answers: okCancel 1/0, yesNo 1/0,
 * yesNoCan 2/1/0 (yes/no/cancel), yesNoAll 3/2/1/0 (all/yes/no/cancel).
 */
#define LWMESSAGEFUNCS_GLOBAL "Info Messages 2"

typedef struct st_LWMessageFuncs {
  void (*info)(const char *line1, const char *line2);
  void (*error)(const char *line1, const char *line2);
  void (*warning)(const char *line1, const char *line2);
  int (*okCancel)(const char *title, const char *line1, const char *line2);
  int (*yesNo)(const char *title, const char *line1, const char *line2);
  int (*yesNoCan)(const char *title, const char *line1, const char *line2);
  int (*yesNoAll)(const char *title, const char *line1, const char *line2);
} LWMessageFuncs;

/* The global's pointer value is the word: program in the top nibble, serial below. */
#define LWSYSTEMID_GLOBAL "System ID"

#define LWSYS_TYPEBITS 0xF0000000
#define LWSYS_SERIALBITS 0x0FFFFFFF
#define LWSYS_LAYOUT 0x00000000
#define LWSYS_MODELER 0x10000000
#define LWSYS_SCREAMERNET 0x20000000
#define LWSYS_OTHER 0x80000000

/* Also a word in a pointer: product, build, minor and major version fields. */
#define LWPRODUCTINFO_GLOBAL "Product Info"

#define LWINF_PRODUCT 0x0000000F
#define LWINF_BUILD 0x0000FFF0
#define LWINF_MINORREV 0x000F0000
#define LWINF_MAJORREV 0x00F00000
#define LWINF_RESERVED 0xFF000000

#define LWINF_PRODLWAV 0x00000001
#define LWINF_PRODINSP3D 0x00000002
#define LWINF_PRODOTHER 0x00000004

#define LWINF_GETMAJOR(x) (((x) & LWINF_MAJORREV) >> 20)
#define LWINF_GETMINOR(x) (((x) & LWINF_MINORREV) >> 16)
#define LWINF_GETBUILD(x) (((x) & LWINF_BUILD) >> 4)

/* The low 16 bits are a LANGID_* code. */
#define LWLOCALEINFO_GLOBAL "Locale Info"

#define LWLOC_LANGID 0x0000FFFF
#define LWLOC_RESERVED 0xFFFF0000

#endif
