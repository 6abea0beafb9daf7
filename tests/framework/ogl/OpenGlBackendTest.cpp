#include "tests/framework/ogl/GlTest.h"

#include <epoxy/gl.h>

namespace Qor::Chart::Ogl {
namespace {

using namespace Tokens;
using testing::HasSubstr;

class OpenGlLife : public GlTest {
public:
    static QColor DrawSquare(Agl& p_agl, std::shared_ptr<PrimitiveBuffer const> const& p_square) {
        Reset(p_agl);
        p_agl.Translate(32, 32, 0);
        p_agl.Scale(20, 20, 1);
        p_agl.Color(1, 0, 0);
        p_agl.Draw(p_square);
        return At(p_agl.ReadPixels(0, 0, Size, Size), 32, 32);
    }
};

/// Numbers of the host's state that a frame could disturb.
std::vector<GLint> HostNumbers(bool p_compatibility) {
    std::vector<GLenum> names = {GL_BLEND, GL_CULL_FACE, GL_DEPTH_TEST, GL_STENCIL_TEST, GL_SCISSOR_TEST,
        GL_PROGRAM_POINT_SIZE, GL_LINE_SMOOTH, GL_POLYGON_OFFSET_FILL, GL_PRIMITIVE_RESTART, GL_DITHER, GL_MULTISAMPLE,
        GL_COLOR_LOGIC_OP, GL_CLIP_DISTANCE0, GL_CLIP_DISTANCE0 + 7, GL_CURRENT_PROGRAM, GL_VERTEX_ARRAY_BINDING,
        GL_ARRAY_BUFFER_BINDING, GL_UNIFORM_BUFFER_BINDING, GL_ACTIVE_TEXTURE, GL_TEXTURE_BINDING_2D,
        GL_PIXEL_PACK_BUFFER_BINDING, GL_PACK_ALIGNMENT, GL_UNPACK_ALIGNMENT, GL_UNPACK_ROW_LENGTH, GL_BLEND_SRC_RGB,
        GL_BLEND_DST_ALPHA, GL_BLEND_EQUATION_RGB, GL_DEPTH_FUNC, GL_DEPTH_WRITEMASK, GL_CULL_FACE_MODE, GL_FRONT_FACE,
        GL_PROVOKING_VERTEX, GL_STENCIL_FUNC, GL_STENCIL_BACK_REF, GL_STENCIL_WRITEMASK, GL_STENCIL_CLEAR_VALUE,
        GL_LINE_WIDTH, GL_DRAW_FRAMEBUFFER_BINDING, GL_READ_FRAMEBUFFER_BINDING, GL_VIEWPORT, GL_SCISSOR_BOX,
        GL_COLOR_WRITEMASK, GL_COLOR_CLEAR_VALUE, GL_SAMPLER_BINDING, GL_POLYGON_OFFSET_FACTOR, GL_POLYGON_MODE};
    if (p_compatibility)
        names.insert(names.end(), {0x0BC0 /* alpha test */, 0x0B42 /* polygon stipple */, 0x8861 /* point sprite */});
    std::vector<GLint> numbers;
    for (GLenum const name : names) {
        GLint value[4] = {};
        glGetIntegerv(name, value);
        numbers.insert(numbers.end(), value, value + (name == GL_POLYGON_MODE ? 1 : 4));
    }
    return numbers;
}

TEST_P(OpenGlLife, aFrameLeavesTheHostsStateAsItWas) {
    agl->Flush();
    bool const isCompatibility = GetParam() == Context::Profile::Compatibility;
    GLuint buffer = 0, array = 0, texture = 0, sampler = 0;
    glGenBuffers(1, &buffer);
    glGenVertexArrays(1, &array);
    glGenTextures(1, &texture);
    glGenSamplers(1, &sampler);
    glBindVertexArray(array);
    glBindBuffer(GL_ARRAY_BUFFER, buffer);
    glActiveTexture(GL_TEXTURE3);
    glBindTexture(GL_TEXTURE_2D, texture);
    glBindSampler(3, sampler);
    glPolygonOffset(5, 6);
    for (GLenum const capability :
        {GL_CULL_FACE, GL_STENCIL_TEST, GL_CLIP_DISTANCE0 + 7, GL_COLOR_LOGIC_OP, GL_PRIMITIVE_RESTART}) {
        glEnable(capability);
    }
    glDisable(GL_MULTISAMPLE);
    glCullFace(GL_FRONT);
    glFrontFace(GL_CW);
    glBlendFuncSeparate(GL_ONE, GL_ZERO, GL_DST_ALPHA, GL_SRC_ALPHA);
    glDepthFunc(GL_GEQUAL);
    glDepthMask(GL_FALSE);
    glColorMask(GL_TRUE, GL_FALSE, GL_TRUE, GL_FALSE);
    glClearColor(0, 0.5F, 0, 0);
    glViewport(1, 2, 3, 4);
    glScissor(5, 6, 7, 8);
    glStencilFuncSeparate(GL_BACK, GL_LESS, 9, 3);
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 77);
    glPixelStorei(GL_PACK_ALIGNMENT, 8);
    glProvokingVertex(GL_FIRST_VERTEX_CONVENTION);
    glPolygonMode(GL_FRONT_AND_BACK, GL_LINE);
    if (isCompatibility) {
        glEnable(0x0B42);
        glEnable(0x0BC0);
        glAlphaFunc(GL_NEVER, 0);
    }
    std::vector<GLint> const before = HostNumbers(isCompatibility);

    QImage image(1, 1, QImage::Format_RGB32);
    image.fill(Qt::white);
    agl->BeginFrame();
    agl->Enable(AGL_BLEND);
    agl->Enable(AGL_CLIP_PLANE0);
    agl->PolygonOffset(1, 1);
    agl->ActiveTexture(AGL_TEXTURE3);
    agl->Enable(AGL_TEXTURE_2D);
    agl->BindTexture(std::make_shared<Texture const>(image));
    agl->TexSampling(TextureSampling());
    agl->LineWidth(3);
    EXPECT_EQ(DrawSquare(*agl, MakeSquare(*agl)), QColor(255, 0, 0)) << "the host's state does not disturb the frame";
    Line({0, 0, 0}, {10, 10, 0});
    agl->EndFrame();
    EXPECT_EQ(HostNumbers(isCompatibility), before);

    DrawSquare(*agl, MakeSquare(*agl));
    EXPECT_EQ(HostNumbers(isCompatibility), before) << "drawing outside of a frame";
    glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
}

// What streams take stays as it is: every round sends the same commands.
TEST_P(OpenGlLife, heldBytesGoWithTheirLastOwner) {
    RecordedAgl recorded;
    for (Agl* const each : {agl.get(), &recorded.agl}) {
        std::vector<std::uint64_t> held;
        auto texture = std::make_shared<Texture const>(QImage(16, 8, QImage::Format_RGB32), TextureSampling());
        auto const keeper = MakeSquare(*each);
        each->Flush();
        each->ResetStatistics();
        for (auto square : {MakeSquare(*each), MakeSquare(*each), keeper}) {
            each->Enable(AGL_TEXTURE_2D);
            each->BindTexture(held.size() == 2 ? nullptr : texture);
            each->Draw(square);
            each->Flush();
            held.push_back(each->GetStatistics().heldBytes);
            if (held.size() == 2) {
                texture.reset();
            }
        }
        std::uint64_t const square = 4 * (12 + 12) + 6 * 4;
        EXPECT_EQ(held[1], held[0] + square);
        EXPECT_EQ(each->GetStatistics().triangles, 6U);
        each->Draw(keeper);
        each->Flush();
        bool const hasStreams = each == agl.get();
        EXPECT_LE(each->GetStatistics().heldBytes, held[1] - 16 * 8 * 4) << hasStreams;
        EXPECT_TRUE(hasStreams || each->GetStatistics().heldBytes == square);
    }
}

TEST_P(OpenGlLife, deviceObjectsGoWithTheirLastOwner) {
    auto square = MakeSquare(*agl);
    auto texture = std::make_shared<Texture const>(QImage(2, 2, QImage::Format_RGB32));
    agl->Enable(AGL_TEXTURE_2D);
    agl->BindTexture(texture);
    auto shader = agl->GenGenericShader();
    {
        Bind<Shader> const bind(*agl, shader);
        DrawSquare(*agl, square);
    }
    std::size_t const most = gl->DeviceObjectCount();
    square.reset();
    texture.reset();
    shader.reset();
    agl->Disable(AGL_TEXTURE_2D);
    agl->Clear(AGL_COLOR_BUFFER_BIT);
    agl->Flush();
    EXPECT_LE(gl->DeviceObjectCount(), most - 4) << "vertices, shape, texture and programs";
}

// Host, context, tree and Agl may go in any order.
TEST_P(OpenGlLife, everyOrderOfEndingsIsFine) {
    auto square = MakeSquare(*agl);
    QColor const red(255, 0, 0);
    DrawSquare(*agl, square);
    Context second(GetParam());
    OffscreenTarget secondTarget(Size, Size);
    secondTarget.Bind();
    EXPECT_EQ(DrawSquare(*agl, square), red) << "the same shape in another context";
    context->MakeCurrent();
    EXPECT_EQ(DrawSquare(*agl, square), red) << "and back again";
    target.reset();
    context.reset();
    second.MakeCurrent();
    secondTarget.Bind();
    EXPECT_EQ(DrawSquare(*agl, square), red) << "the first context is gone";
    for (int i = 0; i < 4; ++i) {
        Context third(GetParam());
        OffscreenTarget thirdTarget(Size, Size);
        thirdTarget.Bind();
        EXPECT_EQ(DrawSquare(*agl, square), red) << "a new context, perhaps at an old address";
    }
    second.MakeCurrent();
    secondTarget.Bind();
    agl.reset();
    square.reset();
    auto another = std::make_unique<Agl>(std::make_unique<OpenGlBackend>());
    square = MakeSquare(*another);
    EXPECT_EQ(DrawSquare(*another, square), red);
    second.DoneCurrent();
    square.reset();
    another.reset();
    second.MakeCurrent();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
}

TEST_P(OpenGlLife, withoutAContextThereIsOneSentence) {
    qordebug::CaptureScope const capture(Utility::GetLogger());
    auto const square = MakeSquare(*agl);
    agl->Flush();
    context->DoneCurrent();
    for (int i = 0; i < 3; ++i) {
        agl->BeginFrame();
        agl->Draw(square);
        agl->EndFrame();
    }
    std::string const error = agl->CheckError();
    EXPECT_THAT(error, HasSubstr("No OpenGL context is current"));
    EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    EXPECT_TRUE(agl->ReadPixels(0, 0, 4, 4).isNull());
    EXPECT_NE(agl->CheckError(), "");
    EXPECT_THROW(OffscreenTarget(4, 4), ContextError);
    EXPECT_THROW(target->Read(), ContextError);
    context->MakeCurrent();
    target->Bind();
    EXPECT_EQ(DrawSquare(*agl, square), QColor(255, 0, 0)) << "all is well again";
    EXPECT_THROW(OffscreenTarget(0, 4), ContextError);
    EXPECT_THROW(OffscreenTarget(4, 1 << 20), ContextError);
}

TEST_P(OpenGlLife, aShaderThatDoesNotCompileDrawsPlainColors) {
    qordebug::CaptureScope const capture(Utility::GetLogger());
    ShaderSource const broken("broken", "void Shade() { nonsense }", "vec4 Surface(vec4 color) { return color; }");
    auto const shader = agl->GenShader(broken);
    EXPECT_TRUE(!shader->IsValid() && !shader->Log().empty());
    auto const square = MakeSquare(*agl);
    {
        Bind<Shader> const bind(*agl, shader);
        EXPECT_EQ(DrawSquare(*agl, square), QColor(255, 0, 0));
    }
    EXPECT_THAT(agl->CheckError(), HasSubstr("The shader \"broken\" does not compile"));
    EXPECT_EQ(agl->CheckError(), "");

    ShaderSource const inverted("inverted", ShaderSource::FixedFunction().Vertex(),
        "vec4 Surface(vec4 color) { return vec4(1.0 - color.rgb, float(OPTIONS)); }");
    Bind<Shader> const bind(*agl, agl->GenShader(inverted, 1));
    EXPECT_EQ(DrawSquare(*agl, square), QColor(0, 255, 255));
}

INSTANTIATE_TEST_SUITE_P(
    , OpenGlLife, testing::Values(Context::Profile::Core, Context::Profile::Compatibility), ProfileName);

} // namespace
} // namespace Qor::Chart::Ogl
