// OpenSceneGraph 3.6: root Group > 100 Group > MatrixTransform (StateSet with Material) > one shared Geometry.
#include "bench/peers/common.h"
#include "bench/peers/eglctx.h"
#include <osg/ComputeBoundsVisitor>
#include <osg/Geometry>
#include <osg/KdTree>
#include <osg/LightModel>
#include <osg/Material>
#include <osg/MatrixTransform>
#include <osgUtil/LineSegmentIntersector>
#include <osgUtil/PolytopeIntersector>
#include <osgUtil/UpdateVisitor>
#include <osgGA/EventVisitor>
#include <osgViewer/Viewer>
#include <unordered_map>
using namespace peer;
static char const* P = "osg";

static osg::ref_ptr<osg::Geometry> geometry(Mesh const& m) {
    osg::ref_ptr<osg::Geometry> g = new osg::Geometry;
    auto* v = new osg::Vec3Array(unsigned(m.pos.size() / 3), reinterpret_cast<osg::Vec3 const*>(m.pos.data()));
    auto* n = new osg::Vec3Array(unsigned(m.nrm.size() / 3), reinterpret_cast<osg::Vec3 const*>(m.nrm.data()));
    g->setVertexArray(v);
    g->setNormalArray(n, osg::Array::BIND_PER_VERTEX);
    g->addPrimitiveSet(new osg::DrawElementsUInt(GL_TRIANGLES, unsigned(m.idx.size()), m.idx.data()));
    g->setUseDisplayList(false);
    g->setUseVertexBufferObjects(true);
    return g;
}

struct Scene {
    osg::ref_ptr<osg::Group> root;
    std::vector<osg::MatrixTransform*> leaf;
    size_t index(osg::NodePath const& p) const {
        for (auto* n : p)
            if (auto* mt = dynamic_cast<osg::MatrixTransform*>(n))
                for (size_t i = 0; i < leaf.size(); ++i)
                    if (leaf[i] == mt)
                        return i;
        return ~size_t(0);
    }
};
static void build(Scene& s, std::vector<Leaf> const& L, osg::Geometry* g, bool perLeafColour = true) {
    s.root = new osg::Group;
    s.leaf.reserve(L.size());
    size_t per = L.size() / kGroups;
    osg::Group* grp = nullptr;
    for (size_t i = 0; i < L.size(); ++i) {
        if (i % per == 0) {
            grp = new osg::Group;
            s.root->addChild(grp);
        }
        auto* mt = new osg::MatrixTransform(osg::Matrix::translate(L[i].x, L[i].y, L[i].z));
        if (perLeafColour) {
            auto* m = new osg::Material;
            osg::Vec4 c(L[i].r, L[i].g, L[i].b, 1);
            m->setAmbient(osg::Material::FRONT_AND_BACK, c);
            m->setDiffuse(osg::Material::FRONT_AND_BACK, c);
            mt->getOrCreateStateSet()->setAttributeAndModes(m);
        }
        mt->addChild(g);
        grp->addChild(mt);
        s.leaf.push_back(mt);
    }
}

struct Count : osg::NodeVisitor {
    size_t n = 0;
    Count() : osg::NodeVisitor(TRAVERSE_ALL_CHILDREN) {}
    void apply(osg::Node& x) override {
        ++n;
        traverse(x);
    }
};

static void doBuild(size_t n) {
    auto L = makeLeaves(n);
    auto g = geometry(makeCube());
    {
        Scene s;
        s.leaf.reserve(n);
        size_t r0 = rssBytes();
        double a = now();
        build(s, L, g);
        double b = now();
        size_t r1 = rssBytes();
        if (n > 10000)
            emit1(P, "build", n, "ns/leaf", (b - a) * 1e9 / double(n));
        emit1(P, "memory", n, "bytes/leaf", double(r1 - r0) / double(n));
        a = now();
        s.root->getBound();
        emit1(P, "first_bound", n, "ns/leaf", (now() - a) * 1e9 / double(n));
        a = now();
        s.root = nullptr;
        emit1(P, "destroy", n, "ns/leaf", (now() - a) * 1e9 / double(n));
    }
    if (n <= 10000) { // several builds, for the spread
        std::vector<double> w;
        for (int k = 0; k < 7; ++k) {
            Scene s;
            double a = now();
            build(s, L, g);
            w.push_back(now() - a);
        }
        Stat st = stat(w, w);
        emit(P, "build", n, "ns/leaf", st, 1e9 / double(n));
    }
}

static void doUpdate(size_t n) {
    auto L = makeLeaves(n);
    auto g = geometry(makeCube());
    Scene s;
    build(s, L, g);
    s.root->getBound();
    osgUtil::UpdateVisitor uv;
    osg::ref_ptr<osg::FrameStamp> fs = new osg::FrameStamp;
    uv.setFrameStamp(fs);
    osgGA::EventVisitor ev;
    ev.setFrameStamp(fs);
    unsigned f = 0;
    double sink = 0;
    auto frame = [&] {
        fs->setFrameNumber(++f);
        uv.setTraversalNumber(f);
        uv.reset();
        s.root->accept(uv);
        ev.setTraversalNumber(f);
        s.root->accept(ev);
        sink += s.root->getBound().radius();
    };
    emit(P, "idle", n, "us/frame", measure(frame, 100), 1e6);
    size_t t = targetLeaf(n) + 1;
    double x = 0;
    auto step = [&] {
        x = x > 1 ? 0 : x + 0.01;
        s.leaf[t]->setMatrix(osg::Matrix::translate(60 + x, 0, 0));
        frame();
    };
    Stat st = measure(step, 10);
    osg::BoundingBox bb; // the bound must hold the moved leaf: farther out than any other
    bool ok = s.root->getBound().contains(osg::Vec3(60 + float(x), 0, 0));
    emit(P, "one_change", n, "us/frame", st, 1e6, false, okStr(ok));
    Count c;
    s.root->accept(c);
    size_t nodes = c.n;
    st = measure([&] {
        Count v;
        s.root->accept(v);
        c.n = v.n;
    });
    emit(P, "traverse", n, "ns/node", st, 1e9 / double(nodes), false, okStr(nodes == 2 * n + 101));
    emit(P, "traverse_per_leaf", n, "ns/leaf", st, 1e9 / double(n), false, okStr(c.n == nodes));
    struct Nop : osg::NodeCallback {
        size_t k = 0;
        void operator()(osg::Node* nd, osg::NodeVisitor* nv) override {
            ++k;
            traverse(nd, nv);
        }
    };
    osg::ref_ptr<Nop> cb = new Nop;
    for (auto* m : s.leaf)
        m->setUpdateCallback(cb);
    st = measure(frame);
    emit(P, "idle_callback_on_every_leaf", n, "us/frame", st, 1e6, false, okStr(cb->k >= n * size_t(st.reps)));
    if (n > 20000)
        _exit(0);
}

static osg::ref_ptr<osg::Camera> setCamera(osg::Camera* c) {
    c->setViewport(0, 0, kView, kView);
    c->setProjectionMatrixAsPerspective(kFovY, 1, kNear, kFar);
    c->setViewMatrixAsLookAt(osg::Vec3(0, 0, kEyeZ), osg::Vec3(), osg::Vec3(0, 1, 0));
    c->setComputeNearFarMode(osg::CullSettings::DO_NOT_COMPUTE_NEAR_FAR);
    c->setClearColor(osg::Vec4(0, 0, 0.25f, 1));
    c->setCullingMode(c->getCullingMode() & ~osg::CullSettings::SMALL_FEATURE_CULLING);
    return c;
}

static void doDraw(size_t n) {
    bool noop = modeIs("noop");
    makeGlContext(kView);
    auto L = makeLeaves(n);
    for (int colour = 1; colour >= 0; --colour) {
        auto g = geometry(makeCube());
        Scene s;
        build(s, L, g, colour);
        s.root->getOrCreateStateSet()->setMode(GL_CULL_FACE, osg::StateAttribute::ON);
        osg::ref_ptr<osg::LightModel> lm = new osg::LightModel;
        lm->setAmbientIntensity(osg::Vec4(1, 1, 1, 1));
        s.root->getOrCreateStateSet()->setAttributeAndModes(lm);
        if (!colour)
            s.root->getOrCreateStateSet()->setMode(GL_LIGHTING, osg::StateAttribute::OFF);
        osgViewer::Viewer v;
        v.setThreadingModel(osgViewer::Viewer::SingleThreaded);
        osg::ref_ptr<osgViewer::GraphicsWindowEmbedded> w = v.setUpViewerAsEmbeddedInWindow(0, 0, kView, kView);
        setCamera(v.getCamera());
        v.setSceneData(s.root);
        v.setLightingMode(osg::View::HEADLIGHT);
        v.realize();
        v.getCamera()->getStats()->collectStats("rendering", true);
        double cull = 0, drw = 0;
        size_t fr = 0;
        auto frame = [&] {
            v.frame();
            glFinish();
        };
        for (int i = 0; i < 3; ++i)
            frame();
        unsigned char p[4] = {0, 0, 0, 0};
        glReadPixels(kView / 2, kView / 2, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
        bool ok = colour ? (p[0] > 100 && p[1] < 50) : (p[0] > 200 && p[1] > 200);
        char const* chk = noop ? "-" : okStr(ok);
        if (modeIs("discard"))
            glEnable(0x8C89);
        std::vector<double> vc, vd;
        Stat st = measure([&] {
            frame();
            double a;
            unsigned k = v.getViewerFrameStamp()->getFrameNumber();
            if (v.getCamera()->getStats()->getAttribute(k, "Cull traversal time taken", a)) {
                cull += a;
                ++fr;
                vc.push_back(a);
            }
            if (v.getCamera()->getStats()->getAttribute(k, "Draw traversal time taken", a)) {
                drw += a;
                vd.push_back(a);
            }
        });
        glDisable(0x8C89);
        std::string nm = colour ? "draw" : "draw_nocolour";
        emit(P, nm, n, "ms/frame", st, 1e3, true, chk);
        emit(P, nm + "_per_leaf", n, "us/leaf", st, 1e6 / double(n), true, chk);
        if (fr && !vd.empty()) {
            emit(P, nm + "_cull_part", n, "ms/frame", stat(vc, vc), 1e3, true);
            emit(P, nm + "_draw_part", n, "ms/frame", stat(vd, vd), 1e3, true);
        }
        if (n > 20000 || colour == 0) {
            std::fflush(stdout);
            if (colour == 0)
                _exit(0);
        }
        v.setSceneData(nullptr);
        if (n > 20000) {
            s.root.release();
            g.release();
        } // leak instead of the quadratic destroy
    }
}

static void doPick(size_t n) {
    auto L = makeLeaves(n);
    auto g = geometry(makeCube());
    Scene s;
    build(s, L, g);
    s.root->getBound();
    for (int near = 0; near < 2; ++near) {
        osg::ref_ptr<osgUtil::LineSegmentIntersector> li;
        Stat st = measure([&] {
            li = new osgUtil::LineSegmentIntersector(
                osgUtil::Intersector::MODEL, osg::Vec3d(0, 0, kEyeZ), osg::Vec3d(0, 0, -kEyeZ));
            if (near)
                li->setIntersectionLimit(osgUtil::Intersector::LIMIT_NEAREST);
            osgUtil::IntersectionVisitor iv(li);
            s.root->accept(iv);
        });
        bool ok = li->containsIntersections() && s.index(li->getFirstIntersection().nodePath) == targetLeaf(n);
        emit(P, near ? "pick_many_nearest" : "pick_many", n, "ms/pick", st, 1e3, false, okStr(ok));
    }
    if (n > 20000)
        _exit(0);
}

static void doBox(size_t n) {
    auto L = makeLeaves(n);
    auto g = geometry(makeCube());
    Scene s;
    build(s, L, g);
    s.root->getBound();
    osg::ref_ptr<osg::Camera> cam = setCamera(new osg::Camera);
    cam->addChild(s.root);
    size_t must, may;
    boxAnswer(L, must, may);
    osg::ref_ptr<osgUtil::PolytopeIntersector> pi;
    Stat st = measure(
        [&] {
            pi = new osgUtil::PolytopeIntersector(osgUtil::Intersector::PROJECTION, -0.5, -0.5, 0.5, 0.5);
            pi->setIntersectionLimit(osgUtil::Intersector::LIMIT_ONE_PER_DRAWABLE);
            osgUtil::IntersectionVisitor iv(pi);
            cam->accept(iv);
        },
        1, 0.5, 5, 20);
    size_t k = pi->getIntersections().size();
    emit(P, "box_pick", n, "ms/pick", st, 1e3, false, okStr(k >= must && k <= may));
    std::fprintf(stderr, "# osg box: %zu (must %zu, may %zu)\n", k, must, may);
    if (n > 20000)
        _exit(0);
}

static void doMesh() {
    Mesh m = makeTerrain();
    size_t tri, n = m.idx.size() / 3;
    double z;
    terrainAnswer(m, tri, z);
    auto g = geometry(m);
    g->getBound();
    osg::ref_ptr<osg::Group> root = new osg::Group;
    root->addChild(g);
    for (int kd = 0; kd < 2; ++kd) {
        if (kd) {
            double a = now();
            osg::ref_ptr<osg::KdTreeBuilder> kb = new osg::KdTreeBuilder;
            root->accept(*kb);
            emit1(P, "pick_mesh_kdtree_build", n, "ms", (now() - a) * 1e3,
                okStr(dynamic_cast<osg::KdTree*>(g->getShape()) != nullptr));
        }
        osg::ref_ptr<osgUtil::LineSegmentIntersector> li;
        Stat st = measure([&] {
            li = new osgUtil::LineSegmentIntersector(
                osgUtil::Intersector::MODEL, osg::Vec3d(0, 0, kEyeZ), osg::Vec3d(0, 0, -kEyeZ));
            osgUtil::IntersectionVisitor iv(li);
            iv.setUseKdTreeWhenAvailable(kd);
            root->accept(iv);
        });
        bool ok = li->containsIntersections() &&
            std::fabs(li->getFirstIntersection().getWorldIntersectPoint().z() - z) < 1e-3;
        if (!kd)
            ok = ok && li->getFirstIntersection().primitiveIndex == tri;
        emit(P, kd ? "pick_mesh_kdtree" : "pick_mesh", n, "ms/pick", st, 1e3, false, okStr(ok));
    }
}

int main(int argc, char** argv) {
    if (argc < 3)
        return 1;
    std::string c = argv[1];
    size_t n = size_t(std::atof(argv[2]));
    if (c == "build")
        doBuild(n);
    else if (c == "update")
        doUpdate(n);
    else if (c == "draw")
        doDraw(n);
    else if (c == "pick_many")
        doPick(n);
    else if (c == "box_pick")
        doBox(n);
    else if (c == "pick_mesh")
        doMesh();
    std::fflush(stdout);
    _exit(0);
}
