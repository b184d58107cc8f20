/*
 * lwmaster.h -- master handlers: scene-wide plug-ins that see Layout's commands and events.
 */
#ifndef LWSDK_MASTER_H
#define LWSDK_MASTER_H

#include <lwrender.h>
#include <lwdyna.h>

#define LWMASTER_HCLASS "MasterHandler"
#define LWMASTER_ICLASS "MasterInterface"
#define LWMASTER_GCLASS "MasterGizmo"
#define LWMASTER_VERSION 4

/* Built fresh for each event; data is the first argument of the three functions. */
typedef struct st_LWMasterAccess {
  int eventCode;
  void *eventData;
  void *data;
  LWCommandCode (*lookup)(void *data, const char *cmdName);
  int (*execute)(void *data, LWCommandCode cmd, int argc, const DynaValue *argv, DynaValue *result);
  int (*evaluate)(void *data, const char *command);
} LWMasterAccess;

/* Always delivered. */
#define LWEVNT_NOTHING 0
#define LWEVNT_COMMAND 1 /* eventData: the command line */
#define LWEVNT_TIME 2
#define LWEVNT_SELECT 3
#define LWEVNT_RENDER_DONE 4

/*
 * Delivered only to handlers whose flags include LWMASTF_RECEIVE_NOTIFICATIONS.  The codes are
 * hexadecimal and 0x10A-0x10F are unused.  eventData is noted where it carries something.
 */
#define LWEVNT_NOTIFY_MOTION_UPDATE_STARTING 0x100 /* item, or LWITEM_NULL for all */
#define LWEVNT_NOTIFY_MOTION_UPDATE_COMPLETE 0x101 /* item, or LWITEM_NULL for all */
#define LWEVNT_NOTIFY_MESH_REPLACED 0x102          /* object item */
#define LWEVNT_NOTIFY_MESH_UPDATE_STARTING 0x103
#define LWEVNT_NOTIFY_MESH_UPDATE_AFTERMORPHING 0x104
#define LWEVNT_NOTIFY_MESH_UPDATE_AFTERBONES 0x105
#define LWEVNT_NOTIFY_MESH_UPDATE_AFTERLOCALDISPLACEMENTS 0x106
#define LWEVNT_NOTIFY_MESH_UPDATE_AFTERMOTION 0x107
#define LWEVNT_NOTIFY_MESH_UPDATE_COMPLETE 0x108
#define LWEVNT_NOTIFY_RENDER_FRAME_STARTING 0x109
#define LWEVNT_NOTIFY_RENDER_FRAME_COMPLETE 0x110
#define LWEVNT_NOTIFY_RENDER_STARTING 0x111
#define LWEVNT_NOTIFY_RENDER_COMPLETE 0x112 /* also sent by ScreamerNet */
#define LWEVNT_NOTIFY_SCENE_CLEAR_STARTING 0x113 /* scene name */
#define LWEVNT_NOTIFY_SCENE_CLEAR_COMPLETE 0x114 /* scene name */
#define LWEVNT_NOTIFY_SCENE_LOAD_STARTING 0x115  /* file name */
#define LWEVNT_NOTIFY_SCENE_LOAD_COMPLETE 0x116  /* file name */
#define LWEVNT_NOTIFY_SCENE_SAVE_STARTING 0x117  /* file name */
#define LWEVNT_NOTIFY_SCENE_SAVE_COMPLETE 0x118  /* file name */
#define LWEVNT_NOTIFY_ITEM_ADDED 0x119
#define LWEVNT_NOTIFY_ITEM_REMOVING 0x11a
#define LWEVNT_NOTIFY_ITEM_REPARENTED 0x11b
#define LWEVNT_NOTIFY_SURFACE_ALTERED 0x11c
#define LWEVNT_NOTIFY_MESHPOINTS_ALTERED 0x11d /* needs LWMASTF_RECEIVE_NOTIFICATIONS_MESHPOINTS too */
#define LWEVNT_NOTIFY_CHANNEL_ADDED 0x11e
#define LWEVNT_NOTIFY_CHANNEL_REMOVING 0x11f
#define LWEVNT_NOTIFY_SURFACE_ADDED 0x120
#define LWEVNT_NOTIFY_SURFACE_REMOVING 0x121
#define LWEVNT_NOTIFY_PLUGIN_CHANGED 0x122 /* LWEventNotifyPluginChange */
#define LWEVNT_NOTIFY_RENDER_ABORTED 0x123 /* RENDER_COMPLETE still follows */
#define LWEVNT_NOTIFY_TEXTURE_REMOVING 0x124
#define LWEVNT_NOTIFY_IMAGE_REMOVING 0x125
#define LWEVNT_NOTIFY_IMAGE_ALTERED 0x126
#define LWEVNT_NOTIFY_TEXTURE_ALTERED 0x127
#define LWEVNT_NOTIFY_LIST_UPDATE_OBJECTS 0x128
#define LWEVNT_NOTIFY_LIST_UPDATE_LIGHTS 0x129
#define LWEVNT_NOTIFY_LIST_UPDATE_CAMERAS 0x12a
#define LWEVNT_NOTIFY_LIST_UPDATE_BONES 0x12b /* object owning the bones */

typedef struct st_LWEventNotifyPluginChange {
  const char *classname;
  const char *servername;
  unsigned int pluginevent; /* LWEVNT_PLUGIN_* */
} LWEventNotifyPluginChange;

#define LWEVNT_PLUGIN_UPDATED 0
#define LWEVNT_PLUGIN_CREATED 1
#define LWEVNT_PLUGIN_DESTROYED 2
#define LWEVNT_PLUGIN_ENABLED 3
#define LWEVNT_PLUGIN_DISABLED 4
#define LWEVNT_PLUGIN_DESTROYING 5

typedef struct st_LWMasterHandler {
  LWInstanceFuncs *inst;
  LWItemFuncs *item;
  int type; /* LWMAST_* */
  double (*event)(LWInstance inst, const LWMasterAccess *ma);
  unsigned int (*flags)(LWInstance inst);
} LWMasterHandler;

/* A scene master goes with the scene; a layout master survives clearing it. */
#define LWMAST_SCENE 0
#define LWMAST_LAYOUT 1

/* flags(): LAYOUT is needed for LWMAST_LAYOUT to stick; MESHPOINTS needs RECEIVE_NOTIFICATIONS. */
#define LWMASTF_LAYOUT (1 << 0)
#define LWMASTF_RECEIVE_NOTIFICATIONS (1 << 1)
#define LWMASTF_RECEIVE_NOTIFICATIONS_MESHPOINTS (1 << 2)

#endif
