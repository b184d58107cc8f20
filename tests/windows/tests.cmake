# Windows only: how vorn.p names its platform, and what the DLL takes from and offers to the system.
vorn_add_test_suite(windows_tests ${CMAKE_CURRENT_LIST_DIR}/module_identity_test.cpp)

# A copy of LightWave has nothing but Windows itself beside the module: the C++ runtime is linked
# in statically, so every DLL it imports must be one of the system's.
set(system_dlls "kernel32.dll msvcrt.dll shell32.dll user32.dll advapi32.dll ole32.dll")
add_test(NAME vorn_imports_only_system_dlls
  COMMAND sh -c "for d in $(\"$1\" -p \"$2\" | sed -n 's/^\tDLL Name: //p' | tr A-Z a-z); do
                   case \" $3 \" in *\" $d \"*) ;; *) echo \"imports $d\"; exit 1;; esac; done"
          sh ${CMAKE_OBJDUMP} $<TARGET_FILE:vorn> "${system_dlls}")
add_test(NAME vorn_exports_only_descriptor
  COMMAND sh -c "test \"$(\"$1\" -p \"$2\" | awk '/Ordinal.Name Pointer. Table/ {t = 1; next} t && /^\t\\[/ {print $NF; next} t {exit}')\" = _mod_descrip"
          sh ${CMAKE_OBJDUMP} $<TARGET_FILE:vorn>)
