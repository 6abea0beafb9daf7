#include "framework/model/Bitmap.h"

namespace Qor::Chart::Model {

Property<Bitmap, std::string> const Bitmap::ImageFileProperty(
    Field<&Bitmap::_imageFile>, {1, "imageFile", "The path of the image to show."}, std::string());

PropertyList const& Bitmap::ClassProperties() {
    static PropertyList const properties(ModelNode::ClassProperties(), {&ImageFileProperty});
    return properties;
}

Bitmap::~Bitmap() = default;

Core::Ptr<ModelNode> Bitmap::NewOfSameClass() const {
    return Core::MakeNode<Bitmap>();
}

} // namespace Qor::Chart::Model
