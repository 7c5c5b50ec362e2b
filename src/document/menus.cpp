#include "VelmoraDoc.h"
#include "command_table.h"

namespace velmora {

namespace {

using Entries = std::vector<MenuEntry>;

/// A command with its own menu text, or with the wording that this menu gives it.
MenuEntry item(const char* command, const char* text = nullptr) {
    MenuEntry entry;
    entry.command = command;
    entry.text = text != nullptr ? text : findCommand(command)->menuText;
    return entry;
}

MenuEntry bar() {
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::Separator;
    return entry;
}

MenuEntry submenu(const char* text, Entries entries) {
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::Submenu;
    entry.text = text;
    entry.entries = std::move(entries);
    return entry;
}

MenuEntry recentFiles() {
    MenuEntry entry;
    entry.kind = MenuEntry::Kind::RecentFiles;
    return entry;
}

MenuEntry convertSubmenu() {
    return submenu("&Convert to", {item("convert.toUnstructured"), item("convert.toApt"), item("convert.toSkl")});
}

Menu fileMenu() {
    return {"&File",
            {item("file.new"),
             item("file.open"),
             item("file.append"),
             bar(),
             item("file.import"),
             item("file.export"),
             bar(),
             item("file.appendWrl"),
             item("file.closeWrl"),
             item("file.appendDat"),
             item("file.closeDat"),
             bar(),
             item("file.appendSft"),
             item("file.closeSft"),
             item("file.appendCbc"),
             item("file.openApm"),
             item("file.closeApm"),
             bar(),
             item("file.openField"),
             item("file.saveAsField"),
             item("file.closeField"),
             bar(),
             item("file.save"),
             item("file.saveAs"),
             bar(),
             recentFiles(),
             bar(),
             item("file.exit")}};
}

Menu editMenu() {
    return {
        "&Edit",
        {submenu("&Patches", {item("patch.capture"), item("patch.inputAndAdd"), item("patch.undo"), bar(),
                              item("block.delete"), item("block.extract"), item("block.saveAs"), item("block.copy"),
                              item("block.paste"), bar(), item("block.extrapolate"), bar(), item("patch.exit")}),
         submenu("&Lines",
                 {submenu("&Capture", {item("line.captureSection", "&Section"), item("line.captureLine", "&Line")}),
                  submenu("&Input", {item("line.inputSection"), item("line.inputLine")}), item("patch.undo"), bar(),
                  item("line.exit")}),
         submenu("P&oint", {item("point.capture"), item("point.input"), item("point.delete"), item("point.duplicate"),
                            item("point.edit"), item("point.drag"), bar(), item("point.cut"), item("point.copy"),
                            item("point.paste"), bar(), item("point.undo")})}};
}

Menu transformationsMenu() {
    return {"&Transformations",
            {item("model.scaling"),
             item("model.move"),
             item("model.rotation"),
             item("model.flip"),
             item("model.symmetric"),
             item("model.convertation"),
             item("model.lastFirstSwitch"),
             item("model.knife"),
             item("block.merge", "M&erge..."),
             bar(),
             item("model.reflectToApt"),
             item("model.reflectToWrl"),
             item("model.reflectToDat"),
             item("model.reflectToSft"),
             bar(),
             submenu("&Convert to", {item("convert.toUnstructured"), item("convert.toApt"), item("convert.toSkl"),
                                     item("convert.knife")}),
             item("model.intersection"),
             item("model.invisibleRemove"),
             bar(),
             item("model.coonsRebuild"),
             item("model.smooth")}};
}

Menu viewMenu() {
    return {"&View",
            {item("view.toolbar"),
             item("view.statusBar"),
             bar(),
             submenu("&Projection", {item("view.perspective"), item("view.orthographic"), bar(), item("view.top"),
                                     item("view.bottom"), item("view.front"), item("view.back"), item("view.right"),
                                     item("view.left"), item("view.iso"), item("view.manual")}),
             bar(),
             item("view.rotate"),
             item("view.rotateX"),
             item("view.rotateY"),
             item("view.rotateZ"),
             item("view.translateXY"),
             item("view.translateZ"),
             item("view.shift"),
             bar(),
             item("view.scale"),
             item("view.zoomIn"),
             item("view.zoomOut"),
             item("view.fit"),
             item("view.previous"),
             bar(),
             item("view.surface")}};
}

Menu generalBar() {
    return {"General",
            {item("file.new"),
             item("file.open"),
             item("file.save"),
             item("file.append"),
             bar(),
             item("patch.capture"),
             item("patch.inputAndAdd"),
             bar(),
             item("line.captureSection"),
             item("line.inputSection"),
             bar(),
             item("line.captureLine"),
             item("line.inputLine"),
             bar(),
             item("point.capture"),
             bar(),
             item("patch.undo"),
             item("point.undo"),
             bar(),
             item("view.rotate"),
             item("view.rotateX"),
             item("view.rotateY"),
             item("view.rotateZ"),
             item("view.translateXY"),
             item("view.translateZ"),
             item("view.shift"),
             bar(),
             item("view.scale"),
             item("view.zoomIn"),
             item("view.zoomOut"),
             item("view.fit"),
             item("view.surface"),
             bar(),
             item("view.manual"),
             item("view.threeD"),
             item("view.frontView"),
             item("view.upView"),
             item("view.sideView"),
             bar(),
             item("block.only"),
             item("help.topics")}};
}

Menu editingBar() {
    return {"Editing",
            {item("patch.addToBlock"),
             item("block.delete"),
             item("line.splitPatch"),
             item("patch.removeFromBlock"),
             item("block.extract"),
             bar(),
             item("line.rebreak"),
             item("line.delete"),
             item("line.duplicate"),
             item("line.copy"),
             item("line.paste"),
             bar(),
             item("point.next"),
             item("point.input"),
             bar(),
             item("point.delete"),
             item("point.duplicate"),
             item("point.edit"),
             item("point.drag"),
             bar(),
             item("point.cut"),
             item("point.copy"),
             item("point.paste")}};
}

Menu transformationsBar() {
    return {"Transformations",
            {item("convert.toUnstructured"),
             item("convert.toApt"),
             item("convert.toSkl"),
             bar(),
             item("model.scaling"),
             item("model.move"),
             item("model.rotation"),
             item("model.flip"),
             item("model.symmetric"),
             item("model.convertation"),
             item("model.lastFirstSwitch"),
             item("model.knife"),
             item("block.merge"),
             bar(),
             item("model.reflectToApt"),
             item("model.reflectToWrl"),
             item("model.intersection"),
             bar(),
             item("model.coonsRebuild"),
             item("model.smooth")}};
}

} // namespace

const std::vector<Menu>& mainMenus() {
    static const std::vector<Menu> menus = {fileMenu(),
                                            editMenu(),
                                            transformationsMenu(),
                                            viewMenu(),
                                            {"&Options", {item("view.features")}},
                                            {"&Help", {item("help.topics"), bar(), item("help.about")}}};
    return menus;
}

const std::vector<Menu>& toolBars() {
    static const std::vector<Menu> bars = {generalBar(), editingBar(), transformationsBar()};
    return bars;
}

const Menu& pointContextMenu() {
    static const Menu menu = {"Point_context",
                              {item("point.next"),
                               item("point.input", "&Find..."),
                               item("point.edit"),
                               item("point.drag", "D&rag point"),
                               item("point.delete"),
                               item("point.duplicate"),
                               item("point.free"),
                               bar(),
                               item("point.cut", "&Cut"),
                               item("point.copy"),
                               item("point.paste"),
                               bar(),
                               item("buffer.addPoint"),
                               item("buffer.clear"),
                               item("buffer.open"),
                               item("buffer.saveAs"),
                               item("buffer.reverse"),
                               bar(),
                               item("line.correct", "Correct line"),
                               item("point.dragAndCorrect"),
                               item("point.rebreakPart"),
                               item("point.knifePart"),
                               item("point.copyPart"),
                               item("point.pastePart"),
                               item("point.reverseSection"),
                               bar(),
                               item("point.undo"),
                               item("point.exit")}};
    return menu;
}

const Menu& lineContextMenu() {
    static const Menu menu = {"Line Context",
                              {item("line.next"),
                               item("line.splitPatch"),
                               item("line.gateToPatchMode"),
                               item("patch.undo"),
                               bar(),
                               item("line.scaling"),
                               item("line.move"),
                               item("line.flip"),
                               item("line.symmetric"),
                               item("line.rotation"),
                               bar(),
                               item("line.firstPoint"),
                               item("line.interpolate"),
                               item("line.rebreak"),
                               item("line.prescribe"),
                               item("line.delete"),
                               item("line.duplicate"),
                               item("line.weeding"),
                               item("line.knife"),
                               bar(),
                               item("buffer.open.line"),
                               item("buffer.saveAs", "Buffer Save As"),
                               item("buffer.clear", "Buffer clear"),
                               item("buffer.reverse"),
                               item("buffer.merge"),
                               item("buffer.match"),
                               item("line.copy"),
                               item("line.paste"),
                               bar(),
                               item("point.free.line"),
                               item("line.correct"),
                               item("line.cylinder"),
                               bar(),
                               item("line.exit")}};
    return menu;
}

const Menu& patchContextMenu() {
    static const Menu menu = {"Patch Context",
                              {item("patch.addToBlock"),
                               item("patch.removeFromBlock"),
                               item("block.invert"),
                               item("block.new"),
                               item("patch.undo"),
                               bar(),
                               item("block.delete"),
                               item("block.extract"),
                               item("block.saveAs"),
                               item("block.copy"),
                               item("block.paste"),
                               bar(),
                               item("block.merge"),
                               item("block.matchBorder"),
                               item("block.matchBorderAndGrid"),
                               item("model.reflectToApt", "Re&flection"),
                               item("model.intersection"),
                               item("model.invisibleRemove"),
                               convertSubmenu(),
                               bar(),
                               item("line.captureSection"),
                               item("line.captureLine"),
                               item("block.extrapolate"),
                               bar(),
                               item("patch.exit")}};
    return menu;
}

const Menu* activeContextMenu(const VelmoraDoc& document) {
    if (document.capture->pointCaptured || document.capture->pointCaptureArmed) {
        return &pointContextMenu();
    }
    if (document.capture->sectionCaptured || document.capture->sectionCaptureArmed || document.capture->lineCaptured ||
        document.capture->lineCaptureArmed) {
        return &lineContextMenu();
    }
    if (document.capture->patchCaptured || document.capture->patchCaptureArmed) {
        return &patchContextMenu();
    }
    return nullptr;
}

} // namespace velmora
