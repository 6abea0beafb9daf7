// VTK 9.1: one shared vtkPolyDataMapper; "tree" = root vtkAssembly > 100 vtkAssembly > vtkActor,
// "flat" = all actors directly in the renderer (how VTK is mostly used).
#include "bench/peers/common.h"
#include <vtkActor.h>
#include <vtkAreaPicker.h>
#include <vtkAssembly.h>
#include <vtkAssemblyPath.h>
#include <vtkAssemblyPaths.h>
#include <vtkAutoInit.h>
#include <vtkCamera.h>
#include <vtkCellArray.h>
#include <vtkCellPicker.h>
#include <vtkFloatArray.h>
#include <vtkHardwareSelector.h>
#include <vtkNew.h>
#include <vtkPointData.h>
#include <vtkPoints.h>
#include <vtkPolyData.h>
#include <vtkPolyDataMapper.h>
#include <vtkProp3DCollection.h>
#include <vtkPropCollection.h>
#include <vtkPropPicker.h>
#include <vtkProperty.h>
#include <vtkRenderWindow.h>
#include <vtkRenderer.h>
#include <vtkSelection.h>
#include <vtkSelectionNode.h>
#include <vtkSmartPointer.h>
#include <vtkStaticCellLocator.h>
#include <GL/gl.h>
VTK_MODULE_INIT(vtkRenderingOpenGL2);
using namespace peer;
static char const* P = "vtk";

static vtkSmartPointer<vtkPolyData> poly(Mesh const& m) {
    auto pd = vtkSmartPointer<vtkPolyData>::New();
    vtkNew<vtkPoints> p;
    vtkNew<vtkCellArray> c;
    vtkNew<vtkFloatArray> nr;
    p->SetNumberOfPoints(vtkIdType(m.pos.size() / 3));
    nr->SetNumberOfComponents(3);
    nr->SetNumberOfTuples(vtkIdType(m.pos.size() / 3));
    for (size_t i = 0; i < m.pos.size() / 3; ++i) {
        p->SetPoint(vtkIdType(i), &m.pos[3 * i]);
        nr->SetTypedTuple(vtkIdType(i), &m.nrm[3 * i]);
    }
    for (size_t i = 0; i < m.idx.size(); i += 3) {
        vtkIdType t[3] = {m.idx[i], m.idx[i + 1], m.idx[i + 2]};
        c->InsertNextCell(3, t);
    }
    pd->SetPoints(p);
    pd->SetPolys(c);
    pd->GetPointData()->SetNormals(nr);
    return pd;
}
static vtkSmartPointer<vtkPolyDataMapper> mapper(Mesh const& m) {
    auto r = vtkSmartPointer<vtkPolyDataMapper>::New();
    r->SetInputData(poly(m));
    r->ScalarVisibilityOff();
    r->Update();
    return r;
}

struct Scene {
    vtkSmartPointer<vtkAssembly> root;
    std::vector<vtkSmartPointer<vtkActor>> leaf;
    size_t index(vtkProp* p) const {
        for (size_t i = 0; i < leaf.size(); ++i)
            if (leaf[i] == p)
                return i;
        return ~size_t(0);
    }
};
static vtkSmartPointer<vtkActor> actor(Leaf const& l, vtkMapper* m) {
    auto a = vtkSmartPointer<vtkActor>::New();
    a->SetMapper(m);
    a->SetPosition(l.x, l.y, l.z);
    a->GetProperty()->SetColor(l.r, l.g, l.b);
    a->GetProperty()->LightingOff();
    return a;
}
// ren != null: flat. Straight into the renderer's collection: vtkRenderer::AddActor searches it linearly for
// each new actor (quadratic, measured on its own as build_flat_addactor).
static void build(Scene& s, std::vector<Leaf> const& L, vtkMapper* m, vtkRenderer* ren) {
    size_t per = L.size() / kGroups;
    vtkSmartPointer<vtkAssembly> g;
    s.leaf.reserve(L.size());
    if (!ren)
        s.root = vtkSmartPointer<vtkAssembly>::New();
    for (size_t i = 0; i < L.size(); ++i) {
        auto a = actor(L[i], m);
        s.leaf.push_back(a);
        if (ren) {
            ren->GetViewProps()->AddItem(a);
            a->AddConsumer(ren);
            continue;
        }
        if (i % per == 0) {
            g = vtkSmartPointer<vtkAssembly>::New();
            s.root->AddPart(g);
        }
        g->AddPart(a);
    }
}
static void camera(vtkRenderer* r) {
    auto* c = r->GetActiveCamera();
    c->SetPosition(0, 0, kEyeZ);
    c->SetFocalPoint(0, 0, 0);
    c->SetViewUp(0, 1, 0);
    c->SetViewAngle(kFovY);
    c->SetClippingRange(kNear, kFar);
    r->SetBackground(0, 0, 0.25);
    r->LightFollowCameraOff();
    r->AutomaticLightCreationOff();
}

static void doBuild(size_t n) {
    auto L = makeLeaves(n);
    auto m = mapper(makeCube());
    {
        Scene s;
        s.leaf.reserve(n);
        size_t r0 = rssBytes();
        double a = now();
        build(s, L, m, nullptr);
        double b = now();
        size_t r1 = rssBytes();
        if (n > 10000)
            emit1(P, "build", n, "ns/leaf", (b - a) * 1e9 / double(n));
        emit1(P, "memory", n, "bytes/leaf", double(r1 - r0) / double(n));
        a = now();
        s.root->GetBounds();
        emit1(P, "first_bound", n, "ns/leaf", (now() - a) * 1e9 / double(n));
        emit1(P, "memory_after_bound", n, "bytes/leaf", double(rssBytes() - r0) / double(n));
        if (n > 10000) {
            a = now();
            s.leaf.clear();
            s.root = nullptr;
            emit1(P, "destroy", n, "ns/leaf", (now() - a) * 1e9 / double(n));
        }
    }
    if (n <= 10000) {
        std::vector<double> w, d;
        for (int k = 0; k < 7; ++k) {
            Scene s;
            double a = now();
            build(s, L, m, nullptr);
            double b = now();
            w.push_back(b - a);
            s.leaf.clear();
            s.root = nullptr;
            d.push_back(now() - b);
        }
        emit(P, "build", n, "ns/leaf", stat(w, w), 1e9 / double(n));
        emit(P, "destroy", n, "ns/leaf", stat(d, d), 1e9 / double(n));
        vtkNew<vtkRenderer> r;
        double a = now();
        for (auto& l : L)
            r->AddActor(actor(l, m));
        emit1(P, "build_flat_addactor", n, "ns/leaf", (now() - a) * 1e9 / double(n));
    }
}

static void doUpdate(size_t n) {
    auto L = makeLeaves(n);
    auto m = mapper(makeCube());
    double b[6];
    size_t t = targetLeaf(n) + 1;
    double x = 0;
    {
        vtkNew<vtkRenderer> r;
        Scene s;
        build(s, L, m, r);
        r->ComputeVisiblePropBounds(b);
        Stat st = measure([&] { r->ComputeVisiblePropBounds(b); });
        emit(P, "idle", n, "us/frame", st, 1e6);
        st = measure([&] {
            x = x > 1 ? 0 : x + 0.01;
            s.leaf[t]->SetPosition(60 + x, 0, 0);
            r->ComputeVisiblePropBounds(b);
        });
        emit(P, "one_change", n, "us/frame", st, 1e6, false, okStr(std::fabs(b[1] - (60 + x + kHalf)) < 1e-3));
        // StaticOn: the mapper no longer asks its pipeline for changes at every use
        m->StaticOn();
        st = measure([&] {
            x = x > 1 ? 0 : x + 0.01;
            s.leaf[t]->SetPosition(60 + x, 0, 0);
            r->ComputeVisiblePropBounds(b);
        });
        emit(P, "one_change_static_mapper", n, "us/frame", st, 1e6, false,
            okStr(std::fabs(b[1] - (60 + x + kHalf)) < 1e-3));
        m->StaticOff();
        if (n > 20000)
            new Scene(s), r->Register(nullptr);
    }
    Scene s;
    build(s, L, m, nullptr);
    s.root->GetBounds();
    Stat st = measure([&] { s.root->GetBounds(); });
    emit(P, "idle_tree", n, "us/frame", st, 1e6);
    st = measure(
        [&] {
            x = x > 1 ? 0 : x + 0.01;
            s.leaf[t]->SetPosition(60 + x, 0, 0);
            std::memcpy(b, s.root->GetBounds(), sizeof b);
        },
        1, 0.5, 5);
    emit(P, "one_change_tree", n, "us/frame", st, 1e6, false, okStr(std::fabs(b[1] - (60 + x + kHalf)) < 1e-3));
    if (n > 20000)
        return; // a traversal of 1e5 paths takes minutes
    size_t cnt = 0;
    st = measure([&] {
        cnt = 0;
        s.root->InitPathTraversal();
        while (s.root->GetNextPath())
            ++cnt;
    });
    emit(P, "traverse_per_leaf", n, "ns/leaf", st, 1e9 / double(n), false, okStr(cnt == n));
}

struct Win {
    vtkNew<vtkRenderWindow> w;
    vtkNew<vtkRenderer> r;
    Win() {
        w->SetOffScreenRendering(1);
        w->SetSize(kView, kView);
        w->SetMultiSamples(0);
        w->AddRenderer(r);
        camera(r);
    }
};

static void doDraw(size_t n) {
    bool noop = modeIs("noop");
    auto L = makeLeaves(n);
    for (int k = 0; k < 3; ++k) { // flat, flat with a static mapper, tree
        bool tree = k == 2;
        if (tree && n > 20000)
            break;
        auto* w = new Win;
        auto m = mapper(makeCube());
        if (k == 1)
            m->StaticOn();
        auto* s = new Scene;
        build(*s, L, m, tree ? nullptr : w->r.Get());
        if (tree)
            w->r->AddViewProp(s->root);
        auto frame = [&] {
            w->w->Render();
            glFinish();
        };
        for (int i = 0; i < 3; ++i)
            frame();
        unsigned char* p = w->w->GetPixelData(kView / 2, kView / 2, kView / 2, kView / 2, 0, 0);
        bool ok = p && p[0] > 200 && p[1] < 50;
        delete[] p;
        char const* chk = noop ? "-" : okStr(ok);
        if (modeIs("discard"))
            glEnable(0x8C89);
        Stat st = measure(frame, 1, 0.5, 5);
        glDisable(0x8C89);
        std::string nm = tree ? "draw_tree" : k == 1 ? "draw_static_mapper" : "draw";
        emit(P, nm, n, "ms/frame", st, 1e3, true, chk);
        emit(P, nm + "_per_leaf", n, "us/leaf", st, 1e6 / double(n), true, chk);
    }
}

static void doPick(size_t n) {
    auto L = makeLeaves(n);
    auto* w = new Win;
    auto m = mapper(makeCube());
    auto* s = new Scene;
    build(*s, L, m, w->r.Get());
    w->w->Render();
    {
        vtkNew<vtkCellPicker> p;
        p->SetTolerance(0);
        Stat st = measure([&] { p->Pick(kView / 2, kView / 2, 0, w->r); }, 1, 0.5, 5);
        emit(P, "pick_many_cellpicker", n, "ms/pick", st, 1e3, false, okStr(s->index(p->GetActor()) == targetLeaf(n)));
    }
    {
        vtkNew<vtkPropPicker> p;
        Stat st = measure([&] { p->Pick(kView / 2, kView / 2, 0, w->r); }, 1, 0.5, 5);
        emit(P, "pick_many_proppicker", n, "ms/pick", st, 1e3, true, okStr(s->index(p->GetActor()) == targetLeaf(n)));
    }
}

static void doBox(size_t n) {
    auto L = makeLeaves(n);
    auto* w = new Win;
    auto m = mapper(makeCube());
    auto* s = new Scene;
    build(*s, L, m, w->r.Get());
    w->w->Render();
    size_t must, may;
    boxAnswer(L, must, may);
    {
        vtkNew<vtkAreaPicker> p;
        Stat st =
            measure([&] { p->AreaPick(kView / 4, kView / 4, 3 * kView / 4, 3 * kView / 4, w->r); }, 1, 0.5, 3, 25);
        size_t k = size_t(p->GetProp3Ds()->GetNumberOfItems());
        std::fprintf(stderr, "# vtk area: %zu (must %zu, may %zu)\n", k, must, may);
        emit(P, "box_pick_area", n, "ms/pick", st, 1e3, false, okStr(k >= must && k <= may));
    }
    {
        vtkNew<vtkHardwareSelector> h;
        h->SetRenderer(w->r);
        h->SetFieldAssociation(1);
        h->SetArea(kView / 4, kView / 4, 3 * kView / 4 - 1, 3 * kView / 4 - 1);
        size_t k = 0;
        Stat st = measure(
            [&] {
                auto sel = vtkSmartPointer<vtkSelection>::Take(h->Select());
                k = sel->GetNumberOfNodes();
            },
            1, 0.5, 3, 25);
        std::fprintf(stderr, "# vtk hw: %zu visible\n", k); // only what is visible in its own pixel: fewer than all
        emit(P, "box_pick_hardware_visible_only", n, "ms/pick", st, 1e3, true, okStr(k > 0 && k <= may));
    }
}

static void doMesh() {
    Mesh m = makeTerrain();
    size_t tri, n = m.idx.size() / 3;
    double z;
    terrainAnswer(m, tri, z);
    auto* w = new Win;
    auto mp = mapper(m);
    vtkNew<vtkActor> a;
    a->SetMapper(mp);
    w->r->AddActor(a);
    w->w->Render();
    for (int loc = 0; loc < 2; ++loc) {
        vtkNew<vtkCellPicker> p;
        p->SetTolerance(0);
        if (loc) {
            double t = now();
            vtkNew<vtkStaticCellLocator> l;
            l->SetDataSet(mp->GetInput());
            l->BuildLocator();
            p->AddLocator(l);
            emit1(P, "pick_mesh_locator_build", n, "ms", (now() - t) * 1e3);
        }
        Stat st = measure([&] { p->Pick(kView / 2, kView / 2, 0, w->r); }, 1, 0.5, 5);
        double* q = p->GetPickPosition();
        bool ok = p->GetActor() == a.Get() && std::fabs(q[2] - z) < 1e-3 && size_t(p->GetCellId()) == tri;
        std::fprintf(stderr, "# vtk mesh z %g want %g cell %lld want %zu\n", q[2], z, (long long)p->GetCellId(), tri);
        emit(P, loc ? "pick_mesh_locator" : "pick_mesh", n, "ms/pick", st, 1e3, false, okStr(ok));
    }
    vtkNew<vtkPropPicker> p;
    Stat st = measure([&] { p->Pick(kView / 2, kView / 2, 0, w->r); }, 1, 0.5, 3);
    emit(P, "pick_mesh_proppicker", n, "ms/pick", st, 1e3, true, okStr(p->GetActor() == a.Get()));
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
