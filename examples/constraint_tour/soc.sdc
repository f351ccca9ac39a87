# Timing constraints of the small system on chip that ../design_tour/soc.xml describes, as a timing tool reads them.
set_units -time ps

# Clocks: name, port and period
set clocks {
  clk_sys  clk     10000
  clk_ref  clk_ref 6400
  clk_usb  usb_clk 16667
  jtag_tck tck     100000
}
foreach {name port period} $clocks {
  create_clock -name $name -period $period -waveform [list 0 [expr {$period / 2}]] [get_ports $port]
  set_clock_uncertainty [expr {0.01 * $period}] [get_clocks $name]
}
create_clock -name clk_virtual -period 20000 -comment "for the host"

# The system PLL and the divider after it
create_generated_clock -name clk_core -source [get_pins u_pll/CLKIN] -multiply_by 2 [get_pins u_pll/CLKOUT]
create_generated_clock -name clk_slow -source [get_nets u_pll/clk_core] -master_clock clk_core \
  -divide_by 8 [get_pins u_uart/u_div/tick]

# Clock domains without paths between them
set_clock_groups -name board -asynchronous \
  -group [get_clocks {clk_sys clk_core clk_slow}] \
  -group [get_clocks clk_usb] \
  -group [get_clocks jtag_tck]

# Board delays: a fraction of the period
proc board_delay {clock part ports} {
  global period_of
  set delay [expr {$part * $period_of($clock)}]
  set_input_delay -max $delay -clock $clock $ports
  set_input_delay -min [expr {$delay / 4}] -clock $clock $ports
}
foreach {name port period} $clocks { set period_of($name) $period }
board_delay clk_sys 0.25 [get_ports {gpio[0] gpio[1] spi_miso}]
board_delay jtag_tck 0.1 [get_ports {tdi tms}]
for {set i 0} {$i < 4} {incr i} {
  set_output_delay 3000 -clock clk_sys [get_ports led[$i]]
}
set_output_delay 2000 -clock clk_usb [get_ports usb_oe]
set_output_delay 500 -clock clk_usb -clock_fall -add_delay [get_ports usb_oe] ;# the falling edge, too

# Exceptions
set asynchronous_inputs [get_ports {rst_n usb_d}]
set_false_path -from $asynchronous_inputs
set_false_path -from [get_clocks clk_usb] -to [get_clocks {clk_sys clk_core}]
set_max_delay 6000 -from [get_cells u_fabric/sel_reg_0] -to [get_cells {u_fabric/sel_reg_1 u_fabric/sel_reg_2}]
set_multicycle_path 4 -setup -from [get_cells u_cpu/u_pc/pc_reg_0] -to [get_cells u_dsp/u_mac]
set_multicycle_path 3 -hold -from [get_cells u_cpu/u_pc/pc_reg_0] -to [get_cells u_dsp/u_mac]

# Values that depend on the design can be passed on
set_output_delay 1500 -clock clk_virtual [all_outputs]
if {[sizeof_collection [get_ports dbg_*]] > 0} {
  set_false_path -from [get_ports dbg_*]
}
set_driving_cell -lib_cell BUF [all_inputs]
