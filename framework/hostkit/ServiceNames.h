#pragma once

// The host's names of its global services, exactly as this module asks for them. The versions
// are part of the names: a 9.6 host answers these older names with prefix-compatible tables.

namespace hostkit {

// The two node input services, held by name so that both can sit behind one base type.
inline constexpr char inFuncs[] = "NodeInputFuncs";
inline constexpr char inFuncs2[] = "NodeInputFuncs 2";

namespace service {

// Values read once with a transient look-up.
inline constexpr char SystemID[] = "System ID";
inline constexpr char ProductInfo[] = "Product Info";

// Services held by the framework's wrappers.
inline constexpr char InfoMessages[] = "Info Messages 2";
inline constexpr char NodeFuncs[] = "NodeFuncs";
inline constexpr char NodeOutputFuncs[] = "NodeOutputFuncs";
inline constexpr char NodeUtilityFuncs[] = "NodeUtilityFuncs";
inline constexpr char InstanceUpdate[] = "Instance Update";
inline constexpr char XPanel[] = "LWXPanel";
inline constexpr char PanelServices[] = "LWPanelServices";
inline constexpr char DirectoryInfo[] = "Directory Info";
inline constexpr char ItemInfo[] = "LW Item Info 3";
inline constexpr char SceneInfo[] = "LW Scene Info 3";
inline constexpr char TimeInfo[] = "LW Time Info";
inline constexpr char VParmFuncs[] = "LWVParmFuncs 2";
inline constexpr char EnvelopeFuncs[] = "Animation Envelopes";
inline constexpr char InterfaceInfo[] = "LW Interface Info 5";

// Declared for wrappers that no plug-in of this module holds as an object.
inline constexpr char Timer[] = "LW Timer";
inline constexpr char RasterServices[] = "RasterServices";
inline constexpr char ServerInfo[] = "LW Server Info";
inline constexpr char CommunicationRing[] = "LW Communication Ring";
inline constexpr char PreviewFunctions[] = "Preview Functions";
inline constexpr char ChannelInfo[] = "Channel Info 2";
inline constexpr char MultiThreadingUtilities[] = "MultiThreading Utilities";
inline constexpr char TextureEditor[] = "Texture Editor 2";
inline constexpr char TextureFunctions[] = "Texture Functions 3";
inline constexpr char SurfaceFunctions[] = "Surface Functions 3";
inline constexpr char SceneObjects[] = "Scene Objects 4";
inline constexpr char ObjectInfo[] = "LW Object Info 4";
inline constexpr char NodeEditorFuncs[] = "NodeEditorFuncs";
inline constexpr char LayoutMonitorFuncs[] = "LWLMonFuncs";
inline constexpr char FileIO[] = "File IO";
inline constexpr char ImageList[] = "LW Image List 3";
inline constexpr char ImageUtility[] = "Image Utility";
inline constexpr char FileRequest[] = "File Request 2";
inline constexpr char ContextMenuServices[] = "ContextMenuServices";
inline constexpr char CameraInfo[] = "LW Camera Info 2";
inline constexpr char GlobalMemory[] = "Global Memory";
inline constexpr char BackdropInfo[] = "LW Backdrop Info 2";

// Every service name above, for tools that enumerate what the module may ask for.
inline constexpr const char* All[] = {
    SystemID, ProductInfo, InfoMessages, NodeFuncs, inFuncs, inFuncs2, NodeOutputFuncs,
    NodeUtilityFuncs, InstanceUpdate, XPanel, PanelServices, DirectoryInfo, ItemInfo, SceneInfo,
    TimeInfo, VParmFuncs, EnvelopeFuncs, InterfaceInfo, Timer, RasterServices, ServerInfo,
    CommunicationRing, PreviewFunctions, ChannelInfo, MultiThreadingUtilities, TextureEditor,
    TextureFunctions, SurfaceFunctions, SceneObjects, ObjectInfo, NodeEditorFuncs,
    LayoutMonitorFuncs, FileIO, ImageList, ImageUtility, FileRequest, ContextMenuServices,
    CameraInfo, GlobalMemory, BackdropInfo};

}  // namespace service
}  // namespace hostkit
