#include "resources/layouts.h"

namespace vldv {

// Dialog units; "&" marks the access key.

const char* const saveFilesLayoutText = R"(<?xml version="1.0" encoding="utf-8"?>
<varlist xmlns="http://velmira.example/vlvarlist/VarList.xsd" name="Select files to save">
<defaultvarlist left="2" top="2" width="161" height="80" parname="File" valname="Save"/>
<userbutton left="167" top="35" width="50" height="14" id="select_all" name="Select &amp;all"/>
<userbutton left="167" top="51" width="50" height="14" id="deselect_all" name="&amp;Deselect all"/>
<button left="167" top="2" width="50" height="14" type="ok" name="Exit"/>
<button left="167" top="17" width="50" height="14" type="cancel"/>
</varlist>
)";

const char* const optionsLayoutText = R"(<?xml version="1.0" encoding="utf-8"?>
<varlist xmlns="http://velmira.example/vlvarlist/VarList.xsd">
<defaultvarlist left="2" top="2" width="206" height="100"/>
<userbutton left="84" top="104" width="40" height="12" id="load" name="&amp;Load"/>
<userbutton left="125" top="104" width="40" height="12" id="save" name="&amp;Save"/>
<userbutton left="166" top="104" width="40" height="12" id="default" name="&amp;Default"/>
<button left="2" top="104" width="40" height="12" type="ok"/>
<button left="43" top="104" width="40" height="12" type="cancel"/>
</varlist>
)";

const char* const recoveryLayoutText = R"(<?xml version="1.0" encoding="utf-8"?>
<varlist xmlns="http://velmira.example/vlvarlist/VarList.xsd" name="Recover unsaved work">
<defaultvarlist left="2" top="2" width="320" height="100" parname="Document" valname="Open"/>
<button left="2" top="106" width="60" height="14" type="ok" name="&amp;Recover"/>
<button left="64" top="106" width="60" height="14" type="cancel" name="&amp;Later"/>
</varlist>
)";

const char* const settingsLayoutText = R"(<?xml version="1.0" encoding="utf-8"?>
<varlist xmlns="http://velmira.example/vlvarlist/VarList.xsd" name="Settings">
<defaultvarlist left="2" top="2" width="246" height="120" parname="Setting" valname="Value"/>
<button left="2" top="126" width="40" height="12" type="ok"/>
<button left="43" top="126" width="40" height="12" type="cancel"/>
</varlist>
)";

} // namespace vldv
