// Prints the triangles that the library for VRML and Inventor makes of a file by itself, each where it stands: nine
// numbers a line. Usage: coin_triangles FILE.

#include <cstdio>
#include <initializer_list>

#include <Inventor/SbMatrix.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/SoPrimitiveVertex.h>
#include <Inventor/actions/SoCallbackAction.h>
#include <Inventor/nodes/SoSeparator.h>
#include <Inventor/nodes/SoShape.h>

namespace {

void printTriangle(void* /*data*/, SoCallbackAction* action, const SoPrimitiveVertex* a, const SoPrimitiveVertex* b,
                   const SoPrimitiveVertex* c) {
    for (const SoPrimitiveVertex* const corner : {a, b, c}) {
        SbVec3f place;
        action->getModelMatrix().multVecMatrix(corner->getPoint(), place);
        std::printf("%.9g %.9g %.9g ", static_cast<double>(place[0]), static_cast<double>(place[1]),
                    static_cast<double>(place[2]));
    }
    std::printf("\n");
}

} // namespace

int main(int count, char** words) {
    SoDB::init();
    SoInput input;
    if (count != 2 || input.openFile(words[1]) == FALSE) {
        return 1;
    }
    SoSeparator* const scene = SoDB::readAll(&input);
    if (scene == nullptr) {
        return 1;
    }
    scene->ref();
    SoCallbackAction action;
    action.addTriangleCallback(SoShape::getClassTypeId(), printTriangle, nullptr);
    action.apply(scene);
    scene->unref();
    return 0;
}
