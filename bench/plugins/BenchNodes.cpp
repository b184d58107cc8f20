// Nodes that exist only to be measured, built on the framework exactly as the module's own.
//
// "benchScale" has a scalar and a colour input, an animatable factor and tint, and an output
// for each input. "benchAllocating" allocates on every evaluation: the benchmarks use it to show
// that their allocation counter sees allocations made inside a loaded module.
#include <lwnodes.h>
#include <lwvparm.h>

#include <atomic>

#include "hostkit/NodeAdaptor.h"
#include "hostkit/NodeHandler.h"
#include "hostkit/PluginRegistration.h"
#include "hostkit/VParm.h"
#include "plugins/ScaleArithmetic.h"

namespace {

constexpr char kPlugin[] = "benchScale";

class ScaleNode : public hostkit::NodeHandler {
 public:
  ScaleNode(void*, void* context, LWError*)
      : NodeHandler(context, LWNODE_HCLASS),
        factor(LWVP_FLOAT, "Factor", kPlugin, channelGroup(), 1.0),
        tint(LWVP_COLOR, "Tint", kPlugin, channelGroup(), hostkit::Vector3<double>(1.0, 1.0, 1.0)) {
    scalarIn_ = addInput(NOT_SCALAR, "Scalar");
    colourIn_ = addColourInput("Colour");
    scalarOut_ = addOutput(NOT_SCALAR, "Scalar");
    colourOut_ = addOutput(NOT_COLOR, "Colour");
  }

  // Connections belong to each node; only the settings travel.
  ScaleNode& operator=(const ScaleNode& other) {
    if (this == &other) return *this;
    factor = other.factor;
    tint = other.tint;
    return *this;
  }

  LWError NewTime(LWFrame frame, LWTime time) override {
    factor.Sample(time);
    tint.Sample(time);
    return RenderHandler::NewTime(frame, time);
  }

  void Evaluate(LWNodalAccess* access, NodeOutputID output, NodeValue value) override {
    if (scalarOut_->is(output)) {
      double x = 0.0;
      scalarIn_->evaluate(access, &x);
      scalarOut_->setValue(value, benchnodes::ScaleScalar(x, factor.value[0]));
    } else if (colourOut_->is(output)) {
      double colour[3] = {0.0, 0.0, 0.0};
      colourIn_->evaluate(access, colour);
      double out[3];
      benchnodes::TintColour(colour, tint.value, factor.value[0], out);
      colourOut_->setValue(value, static_cast<void*>(out));
    }
  }

  hostkit::VParm factor, tint;

 private:
  hostkit::LWNodeInput* scalarIn_;
  hostkit::LWNodeInput* colourIn_;
  hostkit::LWNodeOutput* scalarOut_;
  hostkit::LWNodeOutput* colourOut_;
};

// The block escapes through an atomic so that the compiler cannot pair and drop the new and
// delete.
std::atomic<double*> lastBlock{nullptr};

class AllocatingNode : public hostkit::NodeHandler {
 public:
  AllocatingNode(void*, void* context, LWError*) : NodeHandler(context, LWNODE_HCLASS) {
    out_ = addOutput(NOT_SCALAR, "Value");
  }
  AllocatingNode& operator=(const AllocatingNode&) { return *this; }

  void Evaluate(LWNodalAccess*, NodeOutputID output, NodeValue value) override {
    if (!out_->is(output)) return;
    lastBlock.store(new double[4]{1.0, 2.0, 3.0, 4.0}, std::memory_order_relaxed);
    double* block = lastBlock.exchange(nullptr, std::memory_order_relaxed);
    const double result = block ? block[0] : 0.0;
    delete[] block;
    out_->setValue(value, result);
  }

 private:
  hostkit::LWNodeOutput* out_;
};

int NoInterface(int, GlobalFunc*, void*, void*) { return AFUNC_OK; }

ServerTagInfo scaleTags[] = {{"Bench Scale", SRVTAG_USERNAME}, {nullptr, 0}};
ServerTagInfo allocatingTags[] = {{"Bench Allocating", SRVTAG_USERNAME}, {nullptr, 0}};

hostkit::PluginRegistration scale(LWNODE_HCLASS, hostkit::NodeAdaptor<ScaleNode, 2, 1>::Activate, LWNODE_ICLASS,
                                  NoInterface, "benchScale", scaleTags);
hostkit::PluginRegistration allocating(LWNODE_HCLASS, hostkit::NodeAdaptor<AllocatingNode, 2, 1>::Activate,
                                       LWNODE_ICLASS, NoInterface, "benchAllocating", allocatingTags);

}  // namespace
