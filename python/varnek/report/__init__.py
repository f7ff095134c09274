"""varnek-report: plots, spectra and ParaView files from a finished VARNEK run."""
