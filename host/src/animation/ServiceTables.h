#pragma once

#include <lwenvel.h>
#include <lwvparm.h>

namespace lwhost {

// The C function tables the component serves; the functions find the current Animation.
void FillEnvelopeFuncs(LWEnvelopeFuncs& table);
void FillVParmFuncs(LWVParmFuncs& table);

}  // namespace lwhost
