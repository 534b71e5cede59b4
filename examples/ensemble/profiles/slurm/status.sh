#!/bin/sh
# Prints what snakemake wants to know of a job: running, success or failed. The queue knows a job for some minutes after its
# end; then the accounting does, where the cluster has one.
state=$(scontrol -o show job "$1" 2>/dev/null | sed -n 's/.* JobState=\([A-Z_]*\).*/\1/p')
[ -n "$state" ] || state=$(sacct -n -X -o State -j "$1" 2>/dev/null | awk 'NR == 1 { print $1 }')
case $state in
  COMPLETED) echo success ;;
  PENDING | RUNNING | CONFIGURING | COMPLETING | SUSPENDED | REQUEUED | '') echo running ;;
  *) echo failed ;;
esac
