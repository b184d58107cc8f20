// One node of a module asked for one output SAMPLES times through the host's evaluation path,
// for bench/instructions.sh to count under callgrind. The counters are zeroed after one warm-up
// sample, so lazy symbol binding and first-touch costs stay out of the count.
//
//   sample_instructions SETUP MODULE SERVER OUTPUT SAMPLES
//
// SETUP is how the network is built: "none", "colour" (a connected colour), "corrector" (that,
// with brightness, hue and saturation moved in the form), "materials" (two constant materials),
// "blender" (those, every channel at half opacity in the form), "curves" (a constant material and
// one curve value on every channel's curve), "booster" (that, with the maxima set in the form) or
// "vector" (a vector and a scalar on each of X, Y and Z). The first sample's value is printed, so
// that a node and its reference can be seen to agree.
#include <lwnodes.h>
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <stdexcept>
#include <string>

#include "lwhost/NodalAccess.h"
#include "lwhost/PluginNode.h"
#include "lwhost/Session.h"
#include "lwhost/XPanels.h"
#include "support/SampleMaterial.h"

namespace {

lwhost::XPanel& PanelOf(lwhost::Session& session, lwhost::PluginNode& node) {
  lwhost::XPanel* panel = session.xpanels().find(node.activateInterface().local.panel);
  if (!panel) throw std::runtime_error("the node gave no panel");
  return *panel;
}

void Require(bool ok, const char* what) {
  if (!ok) throw std::runtime_error(what);
}

void SetUp(const std::string& setup, lwhost::Session& session, lwhost::PluginNode& node) {
  lwhost::NodeEditor& editor = session.nodes();
  if (setup == "colour") {
    editor.connect(editor.addColor(0.8, 0.4, 0.2), "Color", node, "Colour");
  } else if (setup == "corrector") {
    editor.connect(editor.addColor(0.8, 0.4, 0.2), "Color", node, "Colour");
    lwhost::XPanel& panel = PanelOf(session, node);
    Require(panel.setNumber(0x9002, 0.8) && panel.setNumber(0x9004, 0.6) && panel.setNumber(0x9005, 0.5),
            "the corrector's panel refused a value");
  } else if (setup == "materials" || setup == "blender") {
    editor.connect(editor.addMaterial(SampleMaterial(0.6)), "Material", node, "Bg Material");
    editor.connect(editor.addMaterial(SampleMaterial(0.3)), "Material", node, "Fg Material");
    if (setup == "materials") return;
    lwhost::XPanel& panel = PanelOf(session, node);
    const int modes[] = {Blend_Multiply, Blend_Screen, Blend_Additive, Blend_Normal, Blend_Difference};
    for (unsigned int k = 0; k < 5; ++k)
      Require(panel.setNumber(0x9000 + 2 * k, 0.5) && panel.setInteger(0x9001 + 2 * k, modes[k]),
              "the blender's panel refused a value");
  } else if (setup == "curves" || setup == "booster") {
    editor.connect(editor.addMaterial(SampleMaterial(0.6)), "Material", node, "Material");
    lwhost::Node& curve = editor.addScalar(0.5);
    const char* const channels[5] = {"Diffuse", "Specular", "Reflection", "Refraction", "Transparency"};
    for (const char* channel : channels) editor.connect(curve, "Scalar", node, std::string(channel) + " Curve");
    if (setup == "curves") return;
    lwhost::XPanel& panel = PanelOf(session, node);
    const double maxima[5] = {3.0, 2.0, 1.5, 0.5, 4.0};
    for (unsigned int k = 0; k < 5; ++k)
      Require(panel.setNumber(0x9001 + 2 * k, maxima[k]), "the booster's panel refused a value");
  } else if (setup == "vector") {
    editor.connect(editor.addVector(0.25, -1.5, 3.0), "Vector", node, "Vector");
    editor.connect(editor.addScalar(0.75), "Scalar", node, "X");
    editor.connect(editor.addScalar(-0.5), "Scalar", node, "Y");
    editor.connect(editor.addScalar(2.0), "Scalar", node, "Z");
  } else {
    Require(setup == "none",
            "SETUP is none, colour, corrector, materials, blender, curves, booster or vector");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 6) {
    std::fprintf(stderr, "usage: sample_instructions SETUP MODULE SERVER OUTPUT SAMPLES\n");
    return 2;
  }
  try {
    lwhost::Session session;
    lwhost::PluginNode& node = session.nodes().addPluginNode(session.load(argv[2]), argv[3]);
    SetUp(argv[1], session, node);
    const std::string fault = node.newTime(48, 2.0);
    Require(fault.empty(), "newTime failed");
    lwhost::NodeOutput* output = node.output(argv[4]);
    Require(output != nullptr, "no such output");
    const long samples = std::strtol(argv[5], nullptr, 10);
    Require(samples > 0, "SAMPLES must be a positive number");

    LWNodalAccess access = lwhost::MakeNodalAccess();
    alignas(LWNodalMaterial) unsigned char out[sizeof(LWNodalMaterial)] = {};
    const lwhost::NodeEditor& editor = session.nodes();
    Require(editor.evaluate(*output, access, out, output->type()), "the output gave no value");
    const double* d = reinterpret_cast<const double*>(out);
    if (output->type() == NOT_MATERIAL)
      for (int k = 0; k < 13; ++k) std::printf(k < 12 ? "%.17g " : "%.17g\n", d[k]);
    else if (output->type() == NOT_INTEGER)
      std::printf("%d\n", *reinterpret_cast<const int*>(out));
    else
      std::printf("%.17g %.17g %.17g\n", d[0], output->type() == NOT_SCALAR ? 0.0 : d[1],
                  output->type() == NOT_SCALAR ? 0.0 : d[2]);
    std::fflush(stdout);
    CALLGRIND_ZERO_STATS;
    for (long i = 0; i < samples; ++i) editor.evaluate(*output, access, out, output->type());
    CALLGRIND_DUMP_STATS;
    return 0;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "sample_instructions: %s\n", e.what());
    return 1;
  }
}
