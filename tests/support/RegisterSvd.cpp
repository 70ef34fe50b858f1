#include "RegisterSvd.h"

QByteArray registerSvd()
{
    return R"(<?xml version="1.0"?>
<device><name>MINI</name><peripherals>
<peripheral><name>P</name><description>A peripheral</description><baseAddress>0x40000000</baseAddress><registers>
<register><name>R</name><description>Control</description><addressOffset>0x10</addressOffset><size>32</size>
 <resetValue>0x00000305</resetValue><fields>
 <field><name>EN</name><description>Enable</description><lsb>0</lsb><msb>0</msb></field>
 <field><name>MODE</name><description>Mode</description><lsb>1</lsb><msb>2</msb><enumeratedValues>
  <enumeratedValue><name>Off</name><description>stopped</description><value>0</value></enumeratedValue>
  <enumeratedValue><name>Slow</name><description>slowly</description><value>1</value></enumeratedValue>
  <enumeratedValue><name>Fast</name><description>quickly</description><value>3</value></enumeratedValue>
 </enumeratedValues></field>
 <field><name>COUNT</name><description>Count</description><lsb>8</lsb><msb>11</msb></field>
 <field><name>STATUS</name><description>Status</description><access>read-only</access><lsb>12</lsb><msb>12</msb>
  <enumeratedValues>
  <enumeratedValue><name>Idle</name><value>0</value></enumeratedValue>
  <enumeratedValue><name>Busy</name><value>1</value></enumeratedValue>
 </enumeratedValues></field>
</fields></register>
<register><name>RO</name><description>Read only</description><addressOffset>0x14</addressOffset><size>16</size><fields>
 <field><name>V</name><description>Value</description><access>read-only</access><lsb>0</lsb><msb>15</msb></field>
</fields></register>
<register><name>EMPTY</name><addressOffset>0x18</addressOffset><size>8</size></register>
</registers></peripheral></peripherals></device>
)";
}
