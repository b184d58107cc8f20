/*
 * lwdyna.h -- dynamic values.  Declared incomplete: the interfaces we use only pass
 * pointers to them (the master handler's command execution).
 */
#ifndef LWSDK_DYNA_H
#define LWSDK_DYNA_H

#include <stddef.h>
#include <lwxpanel.h>

typedef union un_DynaValue DynaValue;

#endif
