# Reads a filter a line; prints what the independent parser makes of each, or ERROR.
use strict;
use warnings;
use OPTIMADE::Filter::Parser;
binmode STDIN;
binmode STDOUT;
while (my $filter = <STDIN>) {
  chomp $filter;
  my $read = eval { OPTIMADE::Filter::Parser->new->parse_string($filter)->to_filter };
  print defined $read ? "$read\n" : "ERROR\n";
}
