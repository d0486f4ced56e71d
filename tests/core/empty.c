int nothingOfInterest;
