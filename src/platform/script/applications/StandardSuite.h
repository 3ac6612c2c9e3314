#pragma once

#include <string_view>

/// The commands and classes that most applications share, with the platform's codes. `count`, `exists`, `get`
/// and `set` are the language's own.
namespace caddis {

/// What every application is asked, whether or not its dictionary says so.
inline constexpr std::string_view RequiredSuite = R"(<dictionary>
<suite name="Required" code="reqd">
  <command name="quit" code="aevtquit">
    <parameter name="saving" code="savo" type="save options"/>
  </command>
  <command name="reopen" code="aevtrapp"/>
</suite>
</dictionary>)";

inline constexpr std::string_view StandardSuite = R"(<dictionary>
<suite name="Standard" code="core">
  <enumeration name="save options" code="savo">
    <enumerator name="yes" code="yes "/>
    <enumerator name="no" code="no  "/>
    <enumerator name="ask" code="ask "/>
  </enumeration>
  <command name="open" code="aevtodoc"/>
  <command name="print" code="aevtpdoc">
    <parameter name="with properties" code="prdt" type="record"/>
    <parameter name="print dialog" code="pdlg" type="boolean"/>
  </command>
  <command name="close" code="coreclos">
    <parameter name="saving" code="savo" type="save options"/>
    <parameter name="saving in" code="kfil" type="file"/>
  </command>
  <command name="save" code="coresave">
    <parameter name="in" code="kfil" type="file"/>
    <parameter name="as" code="fltp" type="type"/>
  </command>
  <command name="delete" code="coredelo"/>
  <command name="duplicate" code="coreclon">
    <parameter name="to" code="insh" type="location specifier"/>
    <parameter name="with properties" code="prdt" type="record"/>
  </command>
  <command name="make" code="corecrel">
    <parameter name="new" code="kocl" type="type"/>
    <parameter name="at" code="insh" type="location specifier"/>
    <parameter name="with data" code="data" type="any"/>
    <parameter name="with properties" code="prdt" type="record"/>
  </command>
  <command name="move" code="coremove">
    <parameter name="to" code="insh" type="location specifier"/>
  </command>
  <class name="application" code="capp">
    <property name="name" code="pnam"/>
    <property name="frontmost" code="pisf"/>
    <property name="version" code="vers"/>
  </class>
  <class name="item" code="cobj">
    <property name="class" code="pcls"/>
    <property name="properties" code="pALL"/>
  </class>
  <class name="document" code="docu">
    <property name="name" code="pnam"/>
    <property name="modified" code="imod"/>
    <property name="file" code="file"/>
    <property name="path" code="ppth"/>
  </class>
  <class name="window" code="cwin">
    <property name="name" code="pnam"/>
    <property name="id" code="ID  "/>
    <property name="index" code="pidx"/>
    <property name="bounds" code="pbnd"/>
    <property name="visible" code="pvis"/>
    <property name="document" code="docu"/>
  </class>
</suite>
</dictionary>)";

} // namespace caddis
